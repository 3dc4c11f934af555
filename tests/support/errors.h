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
