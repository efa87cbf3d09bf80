#pragma once

#include <filesystem>
#include <string_view>

#include "Tests/Support/ChildProcess.h"

/// Calls a program as a text file tells, and compares what it says to the letter:
///
///     $ ARGUMENTS   a call; what stands between two backquotes is one argument, blanks and all
///     ! 2 WORDS     it ends with status 2 and one line of complaint, which has these words
///     any other     its answer
///
/// The calls of a file share their settings.
void expectTranscript(const std::filesystem::path& file, const std::filesystem::path& program,
                      const Environment& environment = {});

/// Expects nothing but one line on the standard error, which begins with the program's name.
void expectComplaint(const FinishedProcess& result, const std::filesystem::path& program,
                     int status, std::string_view words);
