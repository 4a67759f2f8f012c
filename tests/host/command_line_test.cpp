#include <gtest/gtest.h>

#include <ravelin/host/command_line.hpp>
#include <string>
#include <vector>

namespace ravelin::host {
namespace {

TEST(CommandLine, ReadsActionsTargetsAndScriptArguments) {
  struct Row {
    std::vector<std::string_view> arguments;
    bool terminal;
    HostAction action;
    std::string target;
    std::vector<std::string> scriptArguments;
  };
  const Row rows[] = {
      {{}, true, HostAction::Prompt, "", {}},
      {{}, false, HostAction::RunInput, "", {}},
      {{"run.vbs"}, true, HostAction::RunFile, "run.vbs", {}},
      // Options after the script belong to the script.
      {{"run.vbs", "-e", "--help", "x"},
       false,
       HostAction::RunFile,
       "run.vbs",
       {"-e", "--help", "x"}},
      {{"-"}, true, HostAction::RunFile, "-", {}},
      {{"--", "-odd.vbs", "a"}, true, HostAction::RunFile, "-odd.vbs", {"a"}},
      {{"-e", "x", "1", "two words"}, true, HostAction::RunCode, "x", {"1", "two words"}},
      {{"--help"}, true, HostAction::ShowHelp, "", {}},
      {{"-h"}, false, HostAction::ShowHelp, "", {}},
      {{"--version"}, true, HostAction::ShowVersion, "", {}},
      {{"--list"}, true, HostAction::ListClasses, "", {}},
      {{"--list", "clsArrayLong"}, true, HostAction::ListClasses, "clsArrayLong", {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.arguments.empty() ? std::string("(none)") : std::string(row.arguments[0]));
    CommandLine line = parseCommandLine(row.arguments, row.terminal);
    EXPECT_EQ(line.action, row.action);
    EXPECT_EQ(line.target, row.target);
    EXPECT_EQ(line.scriptArguments, row.scriptArguments);
    EXPECT_TRUE(line.error.empty());
  }
}

TEST(CommandLine, RejectsWrongUsageWithAMessage) {
  const std::vector<std::string_view> rows[] = {
      {"-e"}, {"--bogus"}, {"-x", "run.vbs"}, {"--list", "a", "b"}, {"--version", "x"}, {"--"},
  };
  for (const auto& arguments : rows) {
    SCOPED_TRACE(std::string(arguments[0]));
    CommandLine line = parseCommandLine(arguments, true);
    EXPECT_EQ(line.action, HostAction::UsageError);
    EXPECT_FALSE(line.error.empty());
  }
}

}  // namespace
}  // namespace ravelin::host
