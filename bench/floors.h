#ifndef CAMCFG_BENCH_FLOORS_H
#define CAMCFG_BENCH_FLOORS_H

#include <string>

namespace camcfg::bench {

/// The least that a task takes with tinyxml2 and the kernel alone: no lock, no check, no message.

/// Loads a file and reads an integer attribute of a named element of its first section.
int readByHand(const char* path, const char* name, const char* attribute);

/// Loads a file, sets an integer attribute of a named element, and saves it durably in two copies.
void writeByHand(const char* path, const char* backup, const char* name, const char* attribute,
                 int value);

/// Parses a file once.
void parseByHand(const char* path);

/// Parses a file, prints it, and saves it durably in two copies.
void rewriteByHand(const char* path, const char* backup);

}  // namespace camcfg::bench

#endif
