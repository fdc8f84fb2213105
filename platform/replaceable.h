// A service of the operating system that a test may replace by an ordinary function of its own.
#pragma once

#include <utility>

namespace NPlatform {

template <typename Signature>
class Replaceable;

// Calls the system's function, or its replacement. Not guarded: replace only while nothing else
// runs.
template <typename Result, typename... Arguments>
class Replaceable<Result(Arguments...)> {
  public:
    using Function = Result(Arguments...);

    constexpr explicit Replaceable(Function* system) : current_(system) {}
    Replaceable(const Replaceable&) = delete;
    Replaceable& operator=(const Replaceable&) = delete;

    Result operator()(Arguments... arguments) const {
        return current_(std::forward<Arguments>(arguments)...);
    }

    // Puts `function` in place of the current one and returns that, so that it can be put back.
    Function* Replace(Function* function) { return std::exchange(current_, function); }

  private:
    Function* current_;
};

}  // namespace NPlatform
