// How the toolkit looks and speaks.
#pragma once

class QApplication;

namespace qx {

/// Gives the application its icon, a style and colours in which hints can be read, and the toolkit's own
/// texts in German as far as the system has them.
void dress(QApplication& application);

} // namespace qx
