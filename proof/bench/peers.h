#ifndef CAMCFG_BENCH_PEERS_H
#define CAMCFG_BENCH_PEERS_H

#include <memory>
#include <string>
#include <vector>

namespace camcfg::bench {

/// A store of settings that holds the same parameters, each a number.
class Peer {
 public:
  virtual ~Peer() = default;

  /// Opens the store again, reads one parameter and closes it.
  virtual int read(const std::string& parameter) = 0;

  /// Opens the store again, changes one parameter, sees that the change outlasts a power cut, and
  /// closes it.
  virtual void write(const std::string& parameter, int value) = 0;
};

struct PeerKind {
  std::string name;
  /// Lays out a store of that many parameters in an empty directory.
  std::unique_ptr<Peer> (*make)(const std::string& directory, int parameters);
};

/// This library first.
const std::vector<PeerKind>& peers();

}  // namespace camcfg::bench

#endif
