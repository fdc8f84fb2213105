// What ends the command early, and what it tells the user.
#pragma once

#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace NCli {

// Ends the command with a sentence for the user.
class Failure : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

// The command line cannot be what the user meant; nothing was touched.
class WrongUsage : public Failure {
  public:
    using Failure::Failure;
};

// What the user is told about any error that ends the command.
std::string_view SentenceOf(const std::exception& error);

// Calls `run`, tells the user how it failed, and returns the exit status that says so.
int ExitStatusOf(const std::function<void()>& run);

// Shows "xls2tki: " and the UTF-8 text as a line on standard error. Allocates nothing.
void Tell(std::string_view text);

// Tells the user what changes nothing about the outcome, and keeps it for the report.
void Note(const std::string& sentence);

// The system's own text for a value of errno.
std::string SystemText(int error);

}  // namespace NCli
