#ifndef CAMCFG_TOOL_BASE_PROGRESS_H
#define CAMCFG_TOOL_BASE_PROGRESS_H

#include <functional>
#include <string>

namespace camcfg::tool {

/// Reports what is being worked on right now: "/cfg0/mpp_cfg.xml". The caller need not
/// know whether and how that is shown. It costs next to nothing.
void workingOn(const std::string& what);

/// A part of the work, while this object lives: what is worked on is shown after its name. One at a
/// time.
class Stage {
 public:
  /// @param name    "live.srt"
  /// @param number  which of them it is, from 1
  /// @param total   how many there are
  Stage(const std::string& name, std::size_t number, std::size_t total);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
};

/// Hears what is worked on from now on: "live.srt (3 of 7): /cfg0/mpp_cfg.xml". It is called by the
/// thread that works.
/// @param watcher  takes the place of the previous one; empty: nobody hears of it
void watchWork(std::function<void(const std::string& work)> watcher);

/// Says a line at once, while the work goes on, where somebody takes it.
void announce(const std::string& line);

/// @param announcer  prints such a line from now on
void announceBy(std::function<void(const std::string& line)> announcer);

}  // namespace camcfg::tool

#endif
