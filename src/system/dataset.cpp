#include "system/dataset.h"

#include "system/exception.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <type_traits>

namespace {

/// The element type of a vector.
template <class V>
struct ElementOf;

template <class T>
struct ElementOf<Vector<T>>
{
    using Type = T;
};

template <class V>
using Element = typename ElementOf<std::decay_t<V>>::Type;

/// Cells that no write reached are 0 or empty.
template <class T>
T cellOrNothing(const Vector<T>& values, int row)
{
    return row >= 0 && row < values.getSize() ? values[row] : T();
}

template <class T>
void lengthen(Vector<T>& values, int length)
{
    Vector<T> longer(length);
    for (int row = 0; row < length; ++row) {
        longer[row] = row < values.getSize() ? std::move(values[row]) : T();
    }
    values.swap(longer);
}

template <class T>
Vector<T> flattened(const Vector<Scalar>& scalars)
{
    Vector<T> values(scalars.getSize());
    for (int row = 0; row < scalars.getSize(); ++row) {
        values[row] = scalars[row].isEmpty() ? T() : static_cast<T>(scalars[row]);
    }
    return values;
}

} // namespace

DataSet::DataSet() = default;

DataSet::DataSet(const std::string& filename, char separator)
{
    setFieldSeparator(separator);
    load(filename);
}

DataSet::DataSet(const DataSet& other)
    : numRows_(other.numRows_)
    , names(other.names)
    , fieldSeparator(other.fieldSeparator)
{
    columns.reserve(other.columns.size());
    for (const auto& column : other.columns) {
        columns.push_back(std::make_unique<Column>(*column));
    }
}

DataSet::DataSet(DataSet&& other) noexcept
{
    swap(other);
}

DataSet::~DataSet() = default;

DataSet& DataSet::operator=(const DataSet& other)
{
    assign(other);
    return *this;
}

DataSet& DataSet::operator=(DataSet&& other) noexcept
{
    DataSet taken(std::move(other));
    swap(taken);
    return *this;
}

void DataSet::assign(const DataSet& other)
{
    DataSet copy(other);
    swap(copy);
}

void DataSet::swap(DataSet& other) noexcept
{
    std::swap(numRows_, other.numRows_);
    names.swap(other.names);
    columns.swap(other.columns);
    std::swap(fieldSeparator, other.fieldSeparator);
}

Vector<int> DataSet::size() const
{
    Vector<int> size(2);
    size[0] = numRows_;
    size[1] = static_cast<int>(columns.size());
    return size;
}

std::string DataSet::columnType(int column) const
{
    checkColumn(column, "string DataSet::columnType(const int) const");
    static const std::array<const char*, std::variant_size_v<Column>> types = {
        "%d", "%ld", "%f", "%lf", "type error", "%s", "%scalar"};
    return types[columns[static_cast<std::size_t>(column)]->index()];
}

std::string DataSet::columnTypes() const
{
    std::string types;
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        types += columnType(i);
    }
    return types;
}

int DataSet::column(const std::string& name) const
{
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

void DataSet::checkColumn(int column, const char* where) const
{
    if (column < 0 || column >= static_cast<int>(columns.size())) {
        raise<RangeError>(where, "There is no column " + std::to_string(column));
    }
}

template <class T>
Vector<T>& DataSet::data(const std::string& name)
{
    const int position = column(name);
    if (position < 0) {
        columns.push_back(std::make_unique<Column>(Vector<T>()));
        names.push_back(name);
        return std::get<Vector<T>>(*columns.back());
    }
    auto* values = std::get_if<Vector<T>>(columns[static_cast<std::size_t>(position)].get());
    if (!values) {
        raise<TypeError>("Vector<T>& DataSet::data(const string&)",
                         "the column '" + name + "' has the type " + columnType(position));
    }
    return *values;
}

template <class T>
Vector<T>& DataSet::lengthened(const std::string& name, int length)
{
    Vector<T>& values = data<T>(name);
    if (length > values.getSize()) {
        lengthen(values, length);
        numRows_ = length;
    }
    return values;
}

template <class T>
void DataSet::setValue(const std::string& name, int row, const T& value)
{
    if (row < 0) {
        raise<RangeError>("void DataSet::setValue(const string&, const int, const T&)",
                          "There is no row " + std::to_string(row));
    }
    T cell = value; // it may be a cell of this column, which lengthening moves
    lengthened<T>(name, row + 1)[row] = std::move(cell);
}

template <class T>
void DataSet::setValues(const std::string& name, const T& value)
{
    for (int row = numRows_ - 1; row >= 0; --row) {
        setValue<T>(name, row, value);
    }
}

template <class T>
void DataSet::setValues(const std::string& name, const Vector<T>& values)
{
    for (int row = values.getSize() - 1; row >= 0; --row) {
        setValue<T>(name, row, values[row]);
    }
}

template <class T>
T DataSet::getValue(const std::string& name, int row)
{
    return cellOrNothing(data<T>(name), row);
}

template <class T>
const Vector<T>& DataSet::getValues(const std::string& name) const
{
    const std::string where = "const Vector<T>& DataSet::getValues(const string&) const";
    const int position = column(name);
    if (position < 0) {
        std::string known;
        for (const std::string& variable : names) {
            known += variable + " ";
        }
        raise<NameError>(where, "Variable name not found. Known variables are: " + known);
    }
    const auto* values = std::get_if<Vector<T>>(columns[static_cast<std::size_t>(position)].get());
    if (!values) {
        raise<TypeError>(where, "the column '" + name + "' has the type " + columnType(position));
    }
    return *values;
}

void DataSet::remove(int column)
{
    checkColumn(column, "void DataSet::remove(const int)");
    names.erase(names.begin() + column);
    columns.erase(columns.begin() + column);
}

void DataSet::remove(const std::string& name)
{
    const int position = column(name);
    if (position < 0) {
        raise<NameError>("void DataSet::remove(const string&)",
                         "the column '" + name + "' is not in the dataset");
    }
    remove(position);
}

void DataSet::clear()
{
    names.clear();
    columns.clear();
    numRows_ = 0;
}

void DataSet::flatten(int column)
{
    checkColumn(column, "void DataSet::flatten(const int)");
    const auto position = static_cast<std::size_t>(column);
    const auto* scalars = std::get_if<Vector<Scalar>>(columns[position].get());
    if (!scalars || numRows_ == 0 || scalars->getSize() == 0) {
        return;
    }
    const std::string name = names[position];
    const Vector<Scalar> values = *scalars;
    remove(column);
    switch (values[0].isEmpty() ? -1 : values[0].type()) {
    case 3:
        data<int>(name) = flattened<int>(values);
        break;
    case 5:
        data<float>(name) = flattened<float>(values);
        break;
    default:
        break;
    }
}

void DataSet::flatten(const std::string& name)
{
    const int position = column(name);
    if (position < 0) {
        raise<NameError>("void DataSet::flatten(const string&)",
                         "the column '" + name + "' is not in the dataset");
    }
    flatten(position);
}

void DataSet::flatten()
{
    std::vector<std::string> scalarNames;
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        if (columnType(i) == "%scalar") {
            scalarNames.push_back(names[static_cast<std::size_t>(i)]);
        }
    }
    for (const std::string& name : scalarNames) {
        flatten(name);
    }
}

void DataSet::checkTypes(const DataSet& other) const
{
    for (std::size_t i = 0; i < other.columns.size(); ++i) {
        const int mine = column(other.names[i]);
        if (mine >= 0 &&
            columns[static_cast<std::size_t>(mine)]->index() != other.columns[i]->index()) {
            raise<TypeError>("void DataSet::append(const DataSet&)",
                             "the column '" + other.names[i] + "' has the types " +
                                 columnType(mine) + " and " +
                                 other.columnType(static_cast<int>(i)));
        }
    }
}

void DataSet::append(const DataSet& other)
{
    if (this == &other) {
        append(DataSet(other));
        return;
    }
    checkTypes(other);
    if (other.numRows_ == 0) {
        return;
    }
    const int first = numRows_;
    const int last = first + other.numRows_;
    for (std::size_t i = 0; i < other.columns.size(); ++i) {
        const auto addBelow = [&](const auto& added) {
            auto& values = lengthened<Element<decltype(added)>>(other.names[i], last);
            for (int row = first; row < last; ++row) {
                values[row] = cellOrNothing(added, row - first);
            }
        };
        std::visit(addBelow, *other.columns[i]);
    }
}

void DataSet::extend(const DataSet& other)
{
    for (const std::string& name : other.names) {
        if (column(name) >= 0) {
            raise<NameError>("void DataSet::extend(const DataSet&)",
                             "the column '" + name + "' already exists in the dataset");
        }
    }
    DataSet added(other);
    std::move(added.columns.begin(), added.columns.end(), std::back_inserter(columns));
    names.insert(names.end(), added.names.begin(), added.names.end());
    numRows_ = std::max(numRows_, added.numRows_);
}

template <class T>
void DataSet::crop(const std::string& name, const T& value)
{
    const Vector<T>& selector = getValues<T>(name);
    std::vector<int> rows;
    for (int row = 0; row < selector.getSize(); ++row) {
        if (selector[row] == value) {
            rows.push_back(row);
        }
    }
    DataSet kept;
    kept.fieldSeparator = fieldSeparator;
    for (std::size_t i = 0; i < columns.size() && !rows.empty(); ++i) {
        const auto keepRows = [&](const auto& values) {
            const int count = static_cast<int>(rows.size());
            auto& cells = kept.lengthened<Element<decltype(values)>>(names[i], count);
            for (int row = 0; row < count; ++row) {
                cells[row] = cellOrNothing(values, rows[static_cast<std::size_t>(row)]);
            }
        };
        std::visit(keepRows, *columns[i]);
    }
    swap(kept);
}

// Everything that depends on the element type, once for each of the seven.
#define INSTANTIATE(T)                                                                             \
    template void DataSet::setValue(const std::string&, int, const T&);                            \
    template void DataSet::setValues(const std::string&, const T&);                                \
    template void DataSet::setValues(const std::string&, const Vector<T>&);                        \
    template T DataSet::getValue(const std::string&, int);                                         \
    template const Vector<T>& DataSet::getValues(const std::string&) const;                        \
    template void DataSet::crop(const std::string&, const T&)

INSTANTIATE(int);
INSTANTIATE(long);
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(long double);
INSTANTIATE(std::string);
INSTANTIATE(Scalar);
