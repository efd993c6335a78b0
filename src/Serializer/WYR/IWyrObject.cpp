#include "Serializer/WYR/IWyrObject.h"

#include "Serializer/WYR/WyrError.h"

namespace Ubrix {

IWyrObject::IWyrObject() = default;

int IWyrObject::baseVersion() const {
    return 1;
}

int IWyrObject::currentVersion() const {
    return -1;
}

char const* IWyrObject::identity() const {
    return "sarnet.IWyrObject";
}

int IWyrObject::pack(WyrBuf& /*buf*/, int /*cutVersion*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::packMemory(char* /*memory*/, size_t /*size*/, size_t* /*usedSize*/,
                           int /*cutVersion*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::unpack(WyrBuf& /*buf*/, int /*cutVersion*/) {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::unpackMemory(char const* /*memory*/, size_t /*size*/, size_t* /*usedSize*/,
                             int /*cutVersion*/) {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::packTlv(WyrBuf& /*buf*/, long long /*selector*/, int /*cutVersion*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::packTlvMemory(char* /*memory*/, size_t /*size*/, size_t* /*usedSize*/, long long /*selector*/,
                              int /*cutVersion*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::unpackTlv(WyrBuf& /*buf*/, size_t /*length*/, long long* /*selector*/) {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::unpackTlvMemory(char const* /*memory*/, size_t /*size*/, size_t* /*usedSize*/,
                                long long* /*selector*/) {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::visualize(WyrBuf& /*buf*/, int /*indent*/, char /*separator*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::visualizeFile(std::FILE* /*file*/, int /*indent*/, char /*separator*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::toXml(WyrXmlWriter& /*writer*/, char const* /*name*/, int /*cutVersion*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::toXmlMemory(char* /*memory*/, size_t /*size*/, size_t* /*usedSize*/, int /*style*/,
                            int /*cutVersion*/) const {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::fromXmlMemory(char const* /*text*/, size_t /*size*/, int /*style*/, int /*cutVersion*/) {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::fromXml(WyrXmlReader& /*reader*/, char const* /*name*/, int /*cutVersion*/) {
    return WyrError::WYR_ERR_NOT_IMPLEMENTED;
}

int IWyrObject::validate(char const** /*field*/, int /*cutVersion*/) const {
    return WyrError::WYR_NO_ERROR;
}

}  // namespace Ubrix
