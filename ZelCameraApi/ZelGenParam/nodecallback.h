// The link from a node's callbacks to an application's sink.
#pragma once

#include <GenApi/GenApi.h>

#include "ZelCameraApi/ZelGenParam/paramimpl.h"
#include "ZelGenParam/Param.h"

namespace ZelCameraApi::Internal {

// Reports changes of a node to `sink` as changes of `param`. Once registered, the node map owns the
// object. Param and sink must stay valid as long as the node can change.
class ParamEventSink_NodeCallback final : public GenApi::CNodeCallback {
  public:
    ParamEventSink_NodeCallback(GenApi::INode* node, ParamImpl* param,
                                ZelGenParam::ParamEventSink* sink, GenApi::ECallbackType type)
        : CNodeCallback(node, type), param_(param), sink_(sink) {}

    void operator()(GenApi::ECallbackType type) const override {
        if (sink_ == nullptr || type != m_CallbackType || !param_->IsConnected()) return;
        try {
            sink_->OnParamChanged(param_);
        } catch (...) {
            // it must not end the operation of the node map that calls the sink
        }
    }
    void Destroy() override { delete this; }

  private:
    ParamImpl* param_;
    ZelGenParam::ParamEventSink* sink_;
};

}  // namespace ZelCameraApi::Internal
