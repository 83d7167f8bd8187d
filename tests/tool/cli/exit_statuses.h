#ifndef CAMCFG_TESTS_TOOL_CLI_EXIT_STATUSES_H
#define CAMCFG_TESTS_TOOL_CLI_EXIT_STATUSES_H

namespace camcfg::tests {

/// The end of the help on a command that reads the device, and has no status of its own.
constexpr char kHelpEnd[] =
    "'camcfg --help' lists the options that every command takes.\n"
    "\n"
    "Exit status:\n"
    "  0  done\n"
    "  1  refused, not found, or not carried out\n"
    "  2  the command line is wrong\n"
    "  3  the device's files are unusable\n";

}  // namespace camcfg::tests

#endif
