#pragma once

#include <stdexcept>

/// Ends a subcommand with a message and exit status 1.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The command line is wrong: a message and exit status 2.
class UsageFailure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
