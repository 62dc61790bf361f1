// The window of a job's delivery and invoice address.
#pragma once

#include "platform/environment.h"

class QWidget;

namespace qx {

class AddressDialogPresenter;

/// Opens the editor modally. True when the clerk confirms.
bool editJobAddresses(QWidget* parent, Environment& environment, AddressDialogPresenter& addresses);

} // namespace qx
