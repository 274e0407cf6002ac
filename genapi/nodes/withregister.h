// A node that lies in a register: the interface of its kind and IRegister.
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
          register_(*this, map.CameraDescription().Tables().registers[this->Record().data]) {}

    INode* GetNode() override { return this; }

    void Set(const uint8_t* buffer, int64_t length, bool verify = true) override {
        this->RunChange("Set", ChangedByWriteTo(this->CameraDescription(), this->Id()),
                        [&] { SetBytes(buffer, length, verify); });
    }
    void Get(uint8_t* buffer, int64_t length, bool verify = false,
             bool ignoreCache = false) override {
        this->RunRead("Get", [&] {
            CheckTransfer(buffer, length, "InternalGet");
            register_.Read(buffer, static_cast<size_t>(length), {false, ignoreCache});
            if (verify) this->CheckErrorNodes();
        });
    }
    int64_t GetLength(bool = false) override {
        const Entry entry(*this, "GetLength");
        return register_.Length();
    }
    int64_t GetAddress(bool = false) override {
        const Entry entry(*this, "GetAddress");
        return register_.ResolvedAddress();
    }

    void DropCaches() override { register_.DropCaches(); }
    const Presentation& OwnPresentation() const override { return register_.Data().presentation; }

  protected:
    EAccessMode SourceAccessMode(bool) override { return register_.AccessMode(); }
    EAccessMode DeclaredAccessMode() const override {
        return static_cast<EAccessMode>(register_.Data().accessMode);
    }

    void SetBytes(const uint8_t* bytes, int64_t length, bool verify) {
        this->RequireWritable(verify);
        CheckTransfer(bytes, length, "InternalSet");
        register_.Write(bytes, static_cast<size_t>(length));
        this->ForgetValue();
        if (verify) this->CheckErrorNodes();
    }

    RegisterCore register_;

  private:
    void CheckTransfer(const void* buffer, int64_t length, const char* operation) {
        if (!buffer)
            throw NODE_ERROR(LogicalErrorException, *this)(
                "CRegisterImpl::%s : pBuffer must not be NULL", operation);
        if (length < 0 || static_cast<size_t>(length) > register_.ByteCount())
            throw NODE_ERROR(OutOfRangeException, *this)(
                "CRegisterImpl::%s : more data requested than hold by the register", operation);
    }
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
