// Names of the argument library for headers that only mention them: reading its own takes seconds.
#pragma once

namespace CLI {
class App;
class Error;
class Option;
}  // namespace CLI
