#include "system/trace.h"

#include <iostream>

int Trace::depth = 0;

std::map<std::string, int>& Trace::countMap()
{
    static std::map<std::string, int> counts;
    return counts;
}

void traceIndent()
{
    for (int level = 0; level < Trace::depth; ++level) {
        std::cout << "|   ";
    }
}

void Trace::enterFunction(const std::string& name)
{
    traceIndent();
    std::cout << "ENTER> \033[1;33m" << name << "\033[0m [" << ++countMap()[name] << "]\n";
    ++depth;
}

void Trace::leaveFunction(const std::string& name)
{
    --depth;
    traceIndent();
    std::cout << "LEAVE> \033[33m" << name << "\033[0m\n";
}

void Trace::print(const std::string& text)
{
    traceIndent();
    std::cout << "PRINT> \033[34;1m" << text << "\033[0m\n";
}

void Trace::eval(const std::string& name)
{
    traceIndent();
    std::cout << "EVAL> " << name << " = ";
}

void OBSOLETE(const std::string& old, const std::string& replacement)
{
    traceIndent();
    std::cout << "*** WARNING: Obsolete call to " << old << "\n";
    std::cout << "***   Replace by call to: " << replacement << "\n";
}
