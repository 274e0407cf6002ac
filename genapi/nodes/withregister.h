// A node that lies in a register: its kind's interface plus IRegister.
#pragma once

#include <GenApi/IRegister.h>

#include "genapi/description/links.h"
#include "genapi/nodes/registercore.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Base>
class WithRegister : public Base, public IRegister {
  public:
    using Base::operator=;
    WithRegister(NodeMap& map, NodeId id)
        : Base(map, id),
          register_(*this, map.description().tables().registers[this->record().data]) {}

    EAccessMode GetAccessMode() const override { return Base::GetAccessMode(); }
    INode* GetNode() override { return this; }

    void Set(const uint8_t* buffer, int64_t length, bool verify = true) override {
        this->modify("Set", changedByWriteTo(this->description(), this->id()),
                     [&] { setBytes(buffer, length, verify); });
    }
    void Get(uint8_t* buffer, int64_t length, bool verify = false,
             bool ignoreCache = false) override {
        this->read("Get", [&] {
            checkTransfer(buffer, length, "InternalGet");
            register_.read(buffer, static_cast<std::size_t>(length), {false, ignoreCache});
            if (verify) this->checkErrorNodes();
        });
    }
    int64_t GetLength(bool = false) override {
        const Entry entry(*this, "GetLength");
        return register_.length();
    }
    int64_t GetAddress(bool = false) override {
        const Entry entry(*this, "GetAddress");
        return register_.resolvedAddress();
    }

    void dropCaches() override { register_.dropCaches(); }
    const Presentation* presentation() const override { return &register_.data().presentation; }

  protected:
    EAccessMode sourceAccessMode(bool) override { return register_.accessMode(); }
    EAccessMode declaredAccessMode() const override {
        return static_cast<EAccessMode>(register_.data().accessMode);
    }

    void setBytes(const std::uint8_t* bytes, std::int64_t length, bool verify) {
        this->requireWritable(verify);
        checkTransfer(bytes, length, "InternalSet");
        register_.write(bytes, static_cast<std::size_t>(length));
        this->valueIsUnknown();
        if (verify) this->checkErrorNodes();
    }

    RegisterCore register_;

  private:
    void checkTransfer(const void* buffer, std::int64_t length, const char* operation) {
        if (!buffer)
            throw NODE_ERROR(LogicalErrorException, *this)(
                "CRegisterImpl::%s : pBuffer must not be NULL", operation);
        if (length < 0 || static_cast<std::size_t>(length) > register_.byteCount())
            throw NODE_ERROR(OutOfRangeException, *this)(
                "CRegisterImpl::%s : more data requested than hold by the register", operation);
    }
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
