// What the program prints as JSON against the schemas that it prints of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Fails the test when a document is not what the schema of its command says. A broken document is left to
/// the test, which reads it.
void expectDescribed(const std::vector<std::string>& arguments, std::string_view output);

} // namespace qx
