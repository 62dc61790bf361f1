#include "virtual_display.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qx {

VirtualDisplay::VirtualDisplay(const std::string& size) {
  int number[2];
  if (pipe(number) != 0) throw std::runtime_error("no pipe to the X server");
  server_ = fork();
  if (server_ < 0) throw std::runtime_error("the X server cannot be started");
  if (server_ == 0) {
    // It must not outlive a test that is killed.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    close(number[0]);
    const std::string descriptor = std::to_string(number[1]);
    const std::string screen = size + "x24";
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", screen.c_str(), "-nolisten",
           "tcp", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(number[1]);
  std::string text;
  for (char c = 0; read(number[0], &c, 1) == 1 && c != '\n';) text += c;
  close(number[0]);
  if (text.empty()) throw std::runtime_error("Xvfb did not come up; is it installed?");
  setenv("DISPLAY", (":" + text).c_str(), 1);
}

VirtualDisplay::~VirtualDisplay() {
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}

} // namespace qx
