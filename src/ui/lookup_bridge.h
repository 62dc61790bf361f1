#pragma once
#include "platform/environment.h"
#include <string>
#include <string_view>
#include <vector>
namespace qx {
class LookupBridge {
public:
  explicit LookupBridge(Environment& environment) : environment_(environment) {}
  std::vector<std::string> open(std::string_view, std::string_view = {}) { (void)environment_; return {}; }
private:
  Environment& environment_;
};
}
