#include "window_frames.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qx {

WindowFrames::WindowFrames() {
  int ready[2];
  if (pipe(ready) != 0) throw std::runtime_error("no pipe to the window manager");
  manager_ = fork();
  if (manager_ < 0) throw std::runtime_error("the window manager cannot be started");
  if (manager_ == 0) {
    // It must not outlive a test that is killed.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    close(ready[0]);
    // The settings of the system, not those of whoever runs the tests.
    setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
    // What it starts has no other of its files.
    dup2(ready[1], STDOUT_FILENO);
    close(ready[1]);
    execlp("openbox", "openbox", "--sm-disable", "--startup", "echo ready", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ready[1]);
  char c = 0;
  ssize_t length = 0;
  do length = read(ready[0], &c, 1);
  while (length < 0 && errno == EINTR);
  close(ready[0]);
  if (length != 1) throw std::runtime_error("openbox did not come up; is it installed?");
}

WindowFrames::~WindowFrames() {
  kill(manager_, SIGTERM);
  waitpid(manager_, nullptr, 0);
}

} // namespace qx
