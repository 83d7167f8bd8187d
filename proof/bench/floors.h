#ifndef CAMCFG_BENCH_FLOORS_H
#define CAMCFG_BENCH_FLOORS_H

#include <string>
#include <vector>

namespace camcfg::bench {

/// The least that a task takes with only tinyxml2 and the kernel: no lock, no check, no message.

/// Loads a file and reads an integer attribute of a named element of its first section.
int readByHand(const char* path, const char* name, const char* attribute);

/// Loads a file, sets an integer attribute of a named element, and saves it durably in two copies.
void writeByHand(const char* path, const char* backup, const char* name, const char* attribute,
                 int value);

/// Parses a file once.
void parseByHand(const char* path);

/// Parses a file, prints it, and saves it durably in two copies.
void rewriteByHand(const char* path, const char* backup);

/// Loads a file and finds the entry of a number in its first section, by the attribute "Id".
/// @return its integer attributes added up
int findByHand(const char* path, int id, const std::vector<const char*>& attributes);

/// Loads a file, sets all these attributes of the entry of a number to that number, and saves it
/// durably in two copies.
void setByHand(const char* path, const char* backup, int id,
               const std::vector<const char*>& attributes);

}  // namespace camcfg::bench

#endif
