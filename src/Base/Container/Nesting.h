// Containers nested in each other, as deep as a caller or a server likes: the stack has an end.
#pragma once

#include <stdexcept>

namespace Ubrix {

// Containers nested deeper than this are neither copied nor compared nor encoded.
constexpr int kMaxNesting = 1000;

// One level of a recursion through containers, for the length of a scope. Of the thread, since it may lead
// through operations of a caller's classes.
class NestingLevel {
public:
    NestingLevel() { ++t_levels; }
    ~NestingLevel() { --t_levels; }
    NestingLevel(NestingLevel const&) = delete;
    NestingLevel& operator=(NestingLevel const&) = delete;

    static bool IsTooDeep() { return t_levels > kMaxNesting; }

    // Ends the operation, as a want of memory does.
    static void Check() {
        if (IsTooDeep()) {
            throw std::length_error("nesting");
        }
    }

private:
    static inline thread_local int t_levels = 0;
};

// What a container held. Its destructor lets go of it all.
class ContainerContent {
public:
    virtual ~ContainerContent() = default;

private:
    friend void Discard(ContainerContent* content);

    ContainerContent* _next = nullptr;
};

// Deletes `content`, null included. Nested too deep in other content that goes, it waits for the outermost,
// and goes before that is done.
void Discard(ContainerContent* content);

}  // namespace Ubrix
