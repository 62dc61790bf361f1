#include "adapters/system/absent_job_view.h"

namespace qx {

void AbsentJobView::open() {
  desktop_.show(
      {"Die Jobansicht ist noch nicht Teil dieses Programms. Der Befehl 'qximportjob list' zeigt die "
       "Importjobs.",
       std::string(defaultTitle), MessageIcon::Information});
}

} // namespace qx
