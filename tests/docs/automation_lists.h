// The lists of the page on automation.
#pragma once

namespace qx {

void printAutomationLists();

} // namespace qx
