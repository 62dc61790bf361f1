#include "ui/job_grid.h"

#include "ui/form.h"

namespace qx {

std::unique_ptr<Form> JobGrid::details(std::size_t /*row*/) { return nullptr; }

} // namespace qx
