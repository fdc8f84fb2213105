// What ends the command early, and what it tells the user.
#pragma once

#include <stdexcept>
#include <string>

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

// Writes "xls2tki: " and the text as a line to standard error, with a question mark for each control
// character: a message may quote a table, and that must not control the terminal. Allocates nothing.
void Tell(const char* text);

// Tells the user what changes nothing about the outcome.
void Note(const std::string& sentence);

// The system's own text for a value of errno.
std::string SystemText(int error);

}  // namespace NCli
