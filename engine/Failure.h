#pragma once

#include <stdexcept>

namespace engine {

/// What went wrong, as a finished sentence for the person or the program at the other end.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace engine
