// A sink of changes that runs a function of the test's.
#ifndef TESTS_LIBRARY_SINK_H
#define TESTS_LIBRARY_SINK_H

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

#endif  // TESTS_LIBRARY_SINK_H
