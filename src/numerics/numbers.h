#pragma once

#include <memory>
#include <ostream>

/// A record of summary statistics, each of which may be absent.
///
/// A getter raises `UsageError` for a statistic that isn't set. A copy has its own values.
template <class T>
class Numbers
{
public:
    Numbers();
    Numbers(const Numbers& other);
    Numbers(Numbers&& other) noexcept;
    ~Numbers();
    Numbers& operator=(const Numbers& other);

    /// Makes all statistics absent.
    void clear();

    void setCount(unsigned int value);
    void setMinimum(const T& value);
    void setMaximum(const T& value);
    void setMedian(const T& value);
    void setSum(const T& value);
    void setMean(const T& value);
    void setStddev(const T& value);

    unsigned int getCount() const;
    const T& getMinimum() const;
    const T& getMaximum() const;
    const T& getMedian() const;
    const T& getSum() const;
    const T& getMean() const;
    const T& getStddev() const;

private:
    std::unique_ptr<unsigned int> count_;
    std::unique_ptr<T> minimum_;
    std::unique_ptr<T> maximum_;
    std::unique_ptr<T> median_;
    std::unique_ptr<T> sum_;
    std::unique_ptr<T> mean_;
    std::unique_ptr<T> stddev_;
};

/// Seven lines, one per statistic; all must be set.
std::ostream& operator<<(std::ostream& stream, const Numbers<float>& numbers);

class Scalar;

extern template class Numbers<bool>;
extern template class Numbers<char>;
extern template class Numbers<unsigned char>;
extern template class Numbers<short>;
extern template class Numbers<unsigned short>;
extern template class Numbers<int>;
extern template class Numbers<unsigned int>;
extern template class Numbers<long>;
extern template class Numbers<float>;
extern template class Numbers<double>;
extern template class Numbers<long double>;
extern template class Numbers<Scalar>;
