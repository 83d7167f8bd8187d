#include "document/trial.h"
#include "base/concat.h"

#include <algorithm>
#include <csignal>

#include "base/plain_text.h"
#include "cli/channel.h"
#include "commands/groups.h"
#include "device/trial.h"
#include "device/turn.h"

namespace camcfg::tool::commands {
namespace {

using device::TrialEnd;
using device::Turn;
using std::chrono::seconds;

constexpr char kFor[] = "--for";
constexpr char kUsually[] = "10m";
constexpr char kCommand[] = "COMMAND";
constexpr char kArguments[] = "ARGS";
constexpr int kLook = 200;
constexpr int kRetry = 1000;

seconds lengthIn(const std::string& text) {
  constexpr std::pair<char, int> kUnits[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};
  constexpr std::int64_t kLongest = 604800;  // a week
  const auto number = decimal32(text.substr(0, text.empty() ? 0 : text.size() - 1));
  for (const auto& [unit, length] : kUnits)
    if (number && text.back() == unit && *number >= 1 && std::int64_t{*number} * length <= kLongest)
      return seconds(std::int64_t{*number} * length);
  throw Refusal::about(
      kFor,
      concat(kFor, ": ", quoted(text), " is no time from 1s to 7d, such as 90s, 10m, 2h or 1d"),
      Status::Usage);
}

/// A change that is made, and what becomes of it.
class TriedCommand {
 public:
  explicit TriedCommand(const Arguments& arguments)
      : arguments_(arguments), channel_(arguments.channel()) {}

  Answer run() {
    Answer answer = carryOut();
    print([&] {
      channel_.answer(answer, {{"answer", answer.value}, {"pending", document::pendingChange()}});
    });
    for (const std::string& note : answer.notes) channel_.say(note);
    if (!wait_) return answer;
    channel_.say(concat("change ", number(), " is on trial until ", utcText(endOf(*change_.trial)),
                        "; 'camcfg confirm' keeps it, 'camcfg cancel' rolls it back"));
    return ended(awaitEnd());
  }

 private:
  // All with one turn, so that nobody takes the trial for one that nobody waits for.
  Answer carryOut() {
    const Turn turn(Turn::allFiles());
    device::requireNoTrial();
    try {
      Answer answer = arguments_.innerCommand()->run(arguments_.inner());
      if (std::optional<device::RecordedChange> change = device::changeOnTrial()) {
        change_ = std::move(*change);
        wait_.emplace();
      }
      return answer;
    } catch (const Refusal&) {
      if (device::changeOnTrial()) document::rollBack("it failed");
      throw;
    }
  }

  std::string number() const { return std::to_string(change_.number); }

  template <typename Printing>
  void print(const Printing& printing) try {
    printing();
  } catch (const Refusal& refusal) {
    if (!wait_) throw;
    unprinted_ = refusal;
    channel_.say(refusal.what());
  }

  TrialEnd awaitEnd() const {
    std::string why = "it was not confirmed in time";
    try {
      for (auto left = timeLeft(*change_.trial); left.count() > 0;
           left = timeLeft(*change_.trial)) {
        if (const std::optional<TrialEnd> end = endByOthers()) return *end;
        channel_.pause(static_cast<int>(std::min<std::int64_t>(left.count(), kLook)));
      }
    } catch (const cli::Stopped&) {
      why = "it was interrupted";
    }
    return rollBack(why);
  }

  std::optional<TrialEnd> endByOthers() const {
    const std::optional<TrialEnd> end = wait_->end();
    if (end == TrialEnd::RolledBack) channel_.say(concat("change ", number(), " was rolled back"));
    return end;
  }

  // Nobody else may be there to do it.
  TrialEnd rollBack(const std::string& why) const {
    for (std::string said;;) {
      try {
        const Turn turn(Turn::allFiles());
        if (const std::optional<TrialEnd> end = endByOthers()) return *end;
        document::rollBack(why);
        return TrialEnd::RolledBack;
      } catch (const Refusal& refusal) {
        if (said != refusal.what())
          channel_.say(
              concat("change ", number(), " could not be rolled back yet: ", refusal.what()));
        said = refusal.what();
      }
      waitToRetry(said);
    }
  }

  void waitToRetry(const std::string& fault) const try {
    channel_.pause(kRetry);
  } catch (const cli::Stopped&) {
    throw Refusal(concat("change ", number(),
                         " is still in force, until the next command rolls it back: ", fault));
  }

  Answer ended(TrialEnd end) {
    const bool isConfirmed = end == TrialEnd::Confirmed;
    if (isConfirmed) channel_.say(concat("change ", number(), " is confirmed"));
    const char* outcome = isConfirmed ? "confirmed" : "rolledBack";
    print([&] { channel_.answer({{"number", change_.number}, {"outcome", outcome}}); });
    if (isConfirmed && unprinted_)
      throw unprinted_->after("the change is confirmed, but could not be printed: ",
                              Status::NotPrinted);
    Answer answer;
    answer.status = isConfirmed ? Status::Done : Status::RolledBack;
    return answer;
  }

  const Arguments& arguments_;
  const cli::Channel& channel_;
  device::RecordedChange change_;
  std::optional<device::TrialWait> wait_;
  std::optional<Refusal> unprinted_;
};

Answer tryOut(const Arguments& arguments) {
  const seconds length = lengthIn(arguments.given(kFor) ? arguments.text(kFor) : kUsually);
  TriedCommand tried(arguments);
  // The change may break the connection that it was made over.
  std::signal(SIGHUP, SIG_IGN);
  cli::Streams::waitForNoReader();
  document::rollBackWhatIsOver();
  if (arguments.given(kForce) || arguments.inner().given(kForce)) device::confirmFirst();
  device::putOnTrial(length);
  return tried.run();
}

Answer confirm(const Arguments& /*arguments*/) {
  return Answer(document::confirmChange(), {Line{"change {number} is confirmed: {command}"}});
}

Answer cancel(const Arguments& /*arguments*/) {
  return Answer(document::rollBack("it was cancelled"),
                {Line{"change {number} was rolled back: {command}"}});
}

}  // namespace

// What changes no settings ends a trial in its own way, or repairs the files first.
void prepare(const cli::Command& command, const Arguments& arguments) {
  if (command.changesDevice && !command.changesSettings) return;
  document::rollBackWhatIsOver();
  if (command.changesSettings && arguments.given(kForce)) device::confirmFirst();
}

CommandGroup trialGroup() {
  cli::Command trial = restorer(
      "try", "Make a change that is rolled back unless it is confirmed in time", tryOut,
      {{Option::Argument, kCommand, "A command that changes settings"},
       {Option::OptionalArguments, kArguments, "What it takes"},
       {Option::Value, kFor, "Wait so long, 1s to 7d; without it 10m", {}, nullptr, "TIME"},
       {Option::Flag, kForce, "Confirm a change that is on trial first"}});
  trial.goesOn = true;
  trial.takesCommand = true;
  return {"History",
          {std::move(trial), restorer("confirm", "Keep the change that is on trial", confirm),
           restorer("cancel", "Roll the change that is on trial back at once", cancel)}};
}

}  // namespace camcfg::tool::commands
