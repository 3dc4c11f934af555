#include "numerics/fouriertransform.h"

#include "system/exception.h"

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <new>

namespace {

/// The functions of FFTW for a type; the library has a set of names for each.
template <class T>
struct Fftw;

#define FFTW_FUNCTIONS(type, prefix)                                                               \
    template <>                                                                                    \
    struct Fftw<type>                                                                              \
    {                                                                                              \
        using Complex = prefix##_complex;                                                          \
        using Plan = prefix##_plan;                                                                \
                                                                                                   \
        static void* allocate(std::size_t bytes) { return prefix##_malloc(bytes); }                \
                                                                                                   \
        static void release(void* buffer) { prefix##_free(buffer); }                               \
                                                                                                   \
        static Plan plan(int n, Complex* data, int sign)                                           \
        {                                                                                          \
            return prefix##_plan_dft_1d(n, data, data, sign, FFTW_ESTIMATE);                       \
        }                                                                                          \
                                                                                                   \
        static Plan plan(int rows, int columns, Complex* data, int sign)                           \
        {                                                                                          \
            return prefix##_plan_dft_2d(rows, columns, data, data, sign, FFTW_ESTIMATE);           \
        }                                                                                          \
                                                                                                   \
        static void execute(Plan plan) { prefix##_execute(plan); }                                 \
                                                                                                   \
        static void destroy(Plan plan) { prefix##_destroy_plan(plan); }                            \
    };

FFTW_FUNCTIONS(float, fftwf)
FFTW_FUNCTIONS(double, fftw)
FFTW_FUNCTIONS(long double, fftwl)

#undef FFTW_FUNCTIONS

/// A buffer with the plan for it, released together.
template <class T>
class Transform
{
public:
    using Complex = typename Fftw<T>::Complex;
    using Plan = typename Fftw<T>::Plan;

    explicit Transform(std::size_t size)
        : data_(static_cast<Complex*>(Fftw<T>::allocate(size * sizeof(Complex))))
    {
        if (data_ == nullptr) {
            throw std::bad_alloc();
        }
    }

    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;

    ~Transform()
    {
        if (plan_ != nullptr) {
            Fftw<T>::destroy(plan_);
        }
        Fftw<T>::release(data_);
    }

    void setPlan(Plan plan)
    {
        plan_ = plan;
        if (plan_ == nullptr) {
            raise<MathError>("void FourierTransform<T>::compute(...) const",
                             "No plan for this transform");
        }
    }

    void load(std::size_t at, const Vector<T>& re, const Vector<T>& im)
    {
        for (int i = 0; i < re.getSize(); ++i) {
            data_[at + static_cast<std::size_t>(i)][0] = re[i];
            data_[at + static_cast<std::size_t>(i)][1] = im[i];
        }
    }

    void store(std::size_t at, Vector<T>& re, Vector<T>& im) const
    {
        for (int i = 0; i < re.getSize(); ++i) {
            re[i] = data_[at + static_cast<std::size_t>(i)][0];
            im[i] = data_[at + static_cast<std::size_t>(i)][1];
        }
    }

    Complex* data() { return data_; }

    void execute() { Fftw<T>::execute(plan_); }

private:
    Complex* data_;
    Plan plan_ = nullptr;
};

template <class T>
bool sameSize(const Vector<T>& a, const Vector<T>& b)
{
    return a.getSize() == b.getSize();
}

template <class T>
bool sameSize(const Matrix<T>& a, const Matrix<T>& b)
{
    return a.getSize1() == b.getSize1() && a.getSize2() == b.getSize2();
}

template <class Part>
void requireSameSize(const Part& re, const Part& im, const char* where)
{
    if (!sameSize(re, im)) {
        raise<SizeError>(where, "Real and imaginary parts have different sizes");
    }
}

/// Element `steps` becomes element 0.
template <class T>
void rotate(Vector<T>& part, int steps)
{
    std::rotate(part.data(), part.data() + steps, part.data() + part.getSize());
}

template <class T>
void reverseRows(Matrix<T>& part, int begin, int end)
{
    for (--end; begin < end; ++begin, --end) {
        part.swapRows(begin, end);
    }
}

template <class T>
void rotateRows(Matrix<T>& part, int steps)
{
    reverseRows(part, 0, steps);
    reverseRows(part, steps, part.getSize1());
    reverseRows(part, 0, part.getSize1());
}

template <class T>
void shiftPart(Vector<T>& part)
{
    rotate(part, part.getSize() - part.getSize() / 2);
}

template <class T>
void ishiftPart(Vector<T>& part)
{
    rotate(part, part.getSize() / 2);
}

template <class T>
void shiftPart(Matrix<T>& part)
{
    rotateRows(part, part.getSize1() - part.getSize1() / 2);
    for (int i = 0; i < part.getSize1(); ++i) {
        shiftPart(part[i]);
    }
}

template <class T>
void ishiftPart(Matrix<T>& part)
{
    rotateRows(part, part.getSize1() / 2);
    for (int i = 0; i < part.getSize1(); ++i) {
        ishiftPart(part[i]);
    }
}

template <class T, class Function>
void combine(Vector<T>& out, const Vector<T>& re, const Vector<T>& im, Function function)
{
    out.setSize(re.getSize());
    for (int i = 0; i < re.getSize(); ++i) {
        out[i] = function(re[i], im[i]);
    }
}

template <class T, class Function>
void combine(Matrix<T>& out, const Matrix<T>& re, const Matrix<T>& im, Function function)
{
    out.setSize(re.getSize1(), re.getSize2());
    for (int i = 0; i < re.getSize1(); ++i) {
        combine(out[i], re[i], im[i], function);
    }
}

template <class T>
T squaredMagnitude(T re, T im)
{
    return re * re + im * im;
}

template <class T>
T phase(T re, T im)
{
    return static_cast<T>(std::atan2(static_cast<double>(im), static_cast<double>(re)));
}

} // namespace

template <class T>
void FourierTransform<T>::compute(Vector<T>& re, Vector<T>& im, int sign) const
{
    const int n = re.getSize();
    if (n == 0) {
        return;
    }
    Transform<T> transform(static_cast<std::size_t>(n));
    transform.setPlan(Fftw<T>::plan(n, transform.data(), sign));
    transform.load(0, re, im);
    transform.execute();
    transform.store(0, re, im);
}

template <class T>
void FourierTransform<T>::compute(Matrix<T>& re, Matrix<T>& im, int sign) const
{
    const int rows = re.getSize1();
    const auto columns = static_cast<std::size_t>(re.getSize2());
    if (rows == 0 || columns == 0) {
        return;
    }
    Transform<T> transform(static_cast<std::size_t>(rows) * columns);
    transform.setPlan(Fftw<T>::plan(rows, re.getSize2(), transform.data(), sign));
    for (int i = 0; i < rows; ++i) {
        transform.load(static_cast<std::size_t>(i) * columns, re[i], im[i]);
    }
    transform.execute();
    for (int i = 0; i < rows; ++i) {
        transform.store(static_cast<std::size_t>(i) * columns, re[i], im[i]);
    }
}

template <class T>
void FourierTransform<T>::computeForward(Vector<T>& re, Vector<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::computeForward(...) const");
    compute(re, im, FFTW_FORWARD);
}

template <class T>
void FourierTransform<T>::computeForward(Matrix<T>& re, Matrix<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::computeForward(...) const");
    compute(re, im, FFTW_FORWARD);
}

template <class T>
void FourierTransform<T>::computeBackward(Vector<T>& re, Vector<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::computeBackward(...) const");
    compute(re, im, FFTW_BACKWARD);
}

template <class T>
void FourierTransform<T>::computeBackward(Matrix<T>& re, Matrix<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::computeBackward(...) const");
    compute(re, im, FFTW_BACKWARD);
}

template <class T>
void FourierTransform<T>::shift(Vector<T>& re, Vector<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::shift(...) const");
    shiftPart(re);
    shiftPart(im);
}

template <class T>
void FourierTransform<T>::shift(Matrix<T>& re, Matrix<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::shift(...) const");
    shiftPart(re);
    shiftPart(im);
}

template <class T>
void FourierTransform<T>::ishift(Vector<T>& re, Vector<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::ishift(...) const");
    ishiftPart(re);
    ishiftPart(im);
}

template <class T>
void FourierTransform<T>::ishift(Matrix<T>& re, Matrix<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::ishift(...) const");
    ishiftPart(re);
    ishiftPart(im);
}

template <class T>
void FourierTransform<T>::powerSpectrum(Vector<T>& out,
                                        const Vector<T>& re,
                                        const Vector<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::powerSpectrum(...) const");
    combine(out, re, im, squaredMagnitude<T>);
}

template <class T>
void FourierTransform<T>::powerSpectrum(Matrix<T>& out,
                                        const Matrix<T>& re,
                                        const Matrix<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::powerSpectrum(...) const");
    combine(out, re, im, squaredMagnitude<T>);
}

template <class T>
void FourierTransform<T>::phaseAngle(Vector<T>& out, const Vector<T>& re, const Vector<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::phaseAngle(...) const");
    combine(out, re, im, phase<T>);
}

template <class T>
void FourierTransform<T>::phaseAngle(Matrix<T>& out, const Matrix<T>& re, const Matrix<T>& im) const
{
    requireSameSize(re, im, "void FourierTransform<T>::phaseAngle(...) const");
    combine(out, re, im, phase<T>);
}

template class FourierTransform<float>;
template class FourierTransform<double>;
template class FourierTransform<long double>;
