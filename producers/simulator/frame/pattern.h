// What a sensor sees.
#pragma once

namespace ZelSim {

enum class Pattern { ColorBars, GradientHorizontal, GradientDiagonal, Black, White };

}  // namespace ZelSim
