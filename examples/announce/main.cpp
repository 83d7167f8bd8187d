// Prints where the device's streams are found, for the first network card or the one named.
#include <cstdio>

#include "addresses.h"

int main(int argc, char** argv) {
  const std::vector<std::string> addresses = rtspAddresses(argc > 1 ? argv[1] : "");
  for (const std::string& address : addresses) std::printf("%s\n", address.c_str());
  return addresses.empty() ? 1 : 0;
}
