// URL, headers and the registry of live tasks.
#pragma once

#include <VelmorCore/Http.h>

#include <map>
#include <string>

namespace Ubrix {

// A task belongs to one thread at a time; only the registry is for all, under its own lock, which is a leaf.
class WWWTaskBase : public virtual WWWTask {
public:
    // Null leaves the URL empty.
    explicit WWWTaskBase(char const* url);
    ~WWWTaskBase() override;
    WWWTaskBase(WWWTaskBase const&) = delete;
    WWWTaskBase& operator=(WWWTaskBase const&) = delete;

    void SetHeader(char const* key, char const* value) override;
    void SetUrl(char const* url) override;
    char const* GetUrl() override { return _url.c_str(); }

    // True if there is no live task at `task`, which is not looked into.
    static bool IsObjectRelease(WWWTaskBase const* task);
    // Makes the list of live tasks unless it is there. It is never destroyed: tasks may outlast everything
    // else.
    static void MakeLiveTasks();

protected:
    std::map<std::string, std::string> const& Headers() const { return _headers; }
    std::string const& Url() const { return _url; }

private:
    std::string _url;
    std::map<std::string, std::string> _headers;
};

}  // namespace Ubrix
