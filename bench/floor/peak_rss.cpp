// Runs a command and prints its peak resident set in KiB. A process's peak is kept across
// exec, so a command started straight from a large parent (the Python of startup_cost.py)
// reports the parent's size; started from this small process, it reports its own.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: peak_rss COMMAND [ARGUMENT...]\n");
    return 2;
  }
  const pid_t child = fork();
  if (child == 0) {
    execv(argv[1], argv + 1);
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return 2;
  std::printf("%ld\n", usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 2;
}
