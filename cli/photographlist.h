#pragma once

#include <string>
#include <vector>

class Report;

/// The photographs that a command line names: files as they are, and for a folder the picture files
/// in it, by their suffix, in the order of their names. Files that earlier runs made beside a stack
/// ("leaf.jpg.tif", "leaf.jpg-1.tif" where there is a leaf.jpg) are left out, and so is what lies in
/// folders of the folder. A folder without any is a fault of the report.
std::vector<std::string> photographList(const std::vector<std::string>& arguments, Report& report);
