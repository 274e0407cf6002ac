// Command: writes a value that starts something, and knows whether it is done.
//
//   idle --Execute--> running --IsDone reads another value--> idle
#pragma once

#include <GenApi/ICommand.h>

#include "genapi/nodes/integersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class CommandNode final : public Node, public ICommand {
  public:
    CommandNode(NodeMap& map, NodeId id);

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;
    void Execute(bool verify = true) override;
    void operator()() override { Execute(); }
    bool IsDone(bool verify = true) override;

    bool IsPolled() const override { return IsRunning(); }

  protected:
    EAccessMode SourceAccessMode(bool relaxed) override;

  private:
    bool IsRunning() const;
    void SetRunning(bool running);
    bool CheckDone(EAccessMode mode);
    void Start(bool verify);

    IntegerSource value_;
    IntegerSource commandValue_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
