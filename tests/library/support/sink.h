// A sink of changes that runs a function of the test's.
#pragma once

#include <functional>
#include <utility>

#include "ZelGenParam/Param.h"

class Sink final : public ZelGenParam::ParamEventSink {
  public:
    explicit Sink(std::function<void(ZelGenParam::Param* param)> function)
        : function_(std::move(function)) {}
    void OnParamChanged(ZelGenParam::Param* param) override { function_(param); }

  private:
    std::function<void(ZelGenParam::Param* param)> function_;
};
