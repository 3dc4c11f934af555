#pragma once

#include "system/exception.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

/// Expects that `function` raises exactly an `Error`, with this operation and this message.
template <class Error, class Function>
void expectError(Function function, const std::string& where, const std::string& what)
{
    try {
        function();
    } catch (const Exception& exception) {
        EXPECT_TRUE(typeid(exception) == typeid(Error)) << typeid(exception).name();
        EXPECT_EQ(exception.getWhere(), where);
        EXPECT_EQ(exception.getWhat(), what);
        return;
    }
    ADD_FAILURE() << "nothing raised; expected from " << where << ": " << what;
}

/// The same for a statement, which may hold commas.
#define EXPECT_RAISES(Error, where, what, ...) expectError<Error>([&] { __VA_ARGS__; }, where, what)
