// The floor of a C++ process: a hello world on libstdc++, nothing else.
#include <iostream>

int main() {
  std::cout << "hello, world\n";
  return 0;
}
