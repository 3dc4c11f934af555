#pragma once

#include "numerics/scalar.h"
#include "numerics/vector.h"

#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

/// A table of named columns, each a `Vector` of one type, with a text file form.
///
/// The element type `T` is `int`, `long`, `float`, `double`, `long double`, `std::string` or
/// `Scalar`. Columns need not have the same length: a cell that no write reached is 0 or empty.
/// Where an operation names a type that the column does not have it raises `TypeError`.
///
/// The text form has one line of column names and one per row, fields parted by the separator, no
/// quotes. It knows neither `double` nor `long`: they come back as `float` and `int`, and the cells
/// of a `long double` column stay empty.
class DataSet
{
public:
    DataSet();

    /// Reads a file; see `load`.
    explicit DataSet(const std::string& filename, char separator = '\t');
    DataSet(const DataSet& other);
    DataSet(DataSet&& other) noexcept;
    ~DataSet();

    DataSet& operator=(const DataSet& other);
    DataSet& operator=(DataSet&& other) noexcept;
    void assign(const DataSet& other);
    void swap(DataSet& other) noexcept;

    /// True if there is no column.
    bool isEmpty() const { return columns.empty(); }

    int numRows() const { return numRows_; }

    /// Number of rows and number of columns.
    Vector<int> size() const;

    const std::vector<std::string>& variableNames() const { return names; }

    void setFieldSeparator(char separator) { fieldSeparator = separator; }

    char getFieldSeparator() const { return fieldSeparator; }

    /// "%s" for strings, "%d", "%ld", "%f" and "%lf" for `int`, `long`, `float` and `double`,
    /// "%scalar" for `Scalar`, else "type error". Raises `RangeError` for a column that isn't there.
    std::string columnType(int column) const;

    /// The types of all columns, joined.
    std::string columnTypes() const;

    /// Position of the column; -1 if no column has this name.
    int column(const std::string& name) const;

    /// Writes a cell. An unknown name makes a new column at the end; a row beyond the column's
    /// length makes it longer, and makes `numRows()` that length, be it more or less than before.
    /// Filling from the last row to the first allocates once. Raises `RangeError` for a row below 0.
    template <class T>
    void setValue(const std::string& name, int row, const T& value);

    /// Writes `value` to the rows that the table has.
    template <class T>
    void setValues(const std::string& name, const T& value);

    /// Writes element `i` to row `i`.
    template <class T>
    void setValues(const std::string& name, const Vector<T>& values);

    /// The cell, 0 or empty beyond the column's length. An unknown name makes an empty column.
    template <class T>
    T getValue(const std::string& name, int row);

    /// The whole column; the reference holds until the column is changed or removed. Raises
    /// `NameError` for an unknown name.
    template <class T>
    const Vector<T>& getValues(const std::string& name) const;

    /// Deletes a column. Raises `RangeError` or `NameError` if it isn't there.
    void remove(int column);
    void remove(const std::string& name);
    void clear();

    /// Turns a `Scalar` column of a table with rows into an `int` or `float` column, which becomes
    /// the last one; the first cell decides. A column whose first cell has another type is removed.
    /// Columns that aren't `Scalar` stay. Errors as for `remove`.
    void flatten(int column);
    void flatten(const std::string& name);
    void flatten();

    /// Adds the rows of the other table below, by column name; new names make new columns. Raises
    /// `TypeError`, and adds nothing, if two columns of one name differ in type.
    void append(const DataSet& other);

    /// Adds the columns of the other table at the right. Raises `NameError`, and adds nothing, if a
    /// name is there already.
    void extend(const DataSet& other);

    /// Keeps the rows whose cell in the named column equals `value`, and the separator. If there are
    /// none, no column stays. Raises `NameError` for an unknown name.
    template <class T>
    void crop(const std::string& name, const T& value);

    /// Raises `FileReadError` if the file isn't there or can't be read, and then changes nothing.
    void load(const std::string& filename);

    /// Writes the table; the old file stays until the new one is complete. Returns false, and writes
    /// nothing, if the file can't be opened for writing. Raises `FileWriteError` if the file exists
    /// and `overwrite` is false, or if writing fails on the way (a full disk).
    bool save(const std::string& filename, bool overwrite = false) const;

    /// Writes the table; numbers have a decimal point in every locale, and the precision set on the
    /// stream. Leaves the flag `showpoint` set, which tells a whole `float` from an `int`.
    friend std::ostream& operator<<(std::ostream& stream, const DataSet& dataSet);

    /// Reads a table to the end of the stream. A column whose cells are all integers becomes `int`,
    /// one whose cells are all numbers `float`, any other string. Quotes around a name or a string
    /// are taken off. Fields beyond the header are left out, and so are empty lines and the "\r" at a
    /// line's end. A line with fewer fields leaves empty cells, so that the columns stay in step; a
    /// name without cells makes an `int` column, one that stands twice two columns. Where the rows
    /// are so ragged that millions of cells would be made up between others, the table is empty and
    /// the stream bad.
    friend std::istream& operator>>(std::istream& stream, DataSet& dataSet);

private:
    /// A column knows its type, so that no list of types stands beside the columns.
    using Column = std::variant<Vector<int>,
                                Vector<long>,
                                Vector<float>,
                                Vector<double>,
                                Vector<long double>,
                                Vector<std::string>,
                                Vector<Scalar>>;

    template <class T>
    Vector<T>& data(const std::string& name);
    template <class T>
    Vector<T>& lengthened(const std::string& name, int length);
    void checkColumn(int column, const char* where) const;
    void checkTypes(const DataSet& other) const;
    void writeRow(std::ostream& stream, int row) const;
    void fillColumn(const std::string& name, const std::vector<std::string>& cells);

    int numRows_ = 0;
    std::vector<std::string> names;
    std::vector<std::unique_ptr<Column>> columns;
    char fieldSeparator = '\t';
};

std::ostream& operator<<(std::ostream& stream, const DataSet& dataSet);
std::istream& operator>>(std::istream& stream, DataSet& dataSet);
