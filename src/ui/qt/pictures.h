// The pictures of the component by their resource names.
#pragma once

#include "model/job_codes.h"

#include <QIcon>

#include <string_view>

namespace qx {

/// `PROCESSING`, `WARNING`, `ERROR`, `PROCESSED`, `WARNINGGRAY`, `ERRORGRAY`, `BUTTON`, `CONTRACT_NEW`,
/// `CONTRACT_ALTERED`, `CONTRACT_DELETE`, `CONTRACT_DONE`, and the tool pictures of the folder. A null icon
/// for an unknown name.
QIcon picture(std::string_view name);

/// The picture of a state, by its name, with the mark of a released job.
QIcon releasedPicture(std::string_view name);

/// The picture of a severity in a findings list: `PROCESSING`, `WARNING` or `ERROR`.
QIcon severityPicture(CheckStatus severity);
/// The picture beside a field: `WARNINGGRAY` or `ERRORGRAY`; null when it is clean.
QIcon fieldPicture(CheckStatus severity);

} // namespace qx
