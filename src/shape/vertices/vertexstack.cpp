#include "shape/vertices/vertexstack.h"

#include "shape/vertices/shapestream.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <algorithm>

template <class T>
VertexStack<T>::VertexStack() = default;

template <class T>
VertexStack<T>::VertexStack(int space, int height, int size, int capacity, int growth)
{
    create(space, height, size, capacity, growth);
}

template <class T>
VertexStack<T>::VertexStack(const VertexStack& other)
    : Shape<T>(other)
{
    takeLevels(other);
}

template <class T>
VertexStack<T>::VertexStack(const std::string& filename)
{
    this->load(filename);
}

template <class T>
VertexStack<T>::~VertexStack() = default;

template <class T>
VertexStack<T>& VertexStack<T>::operator=(const VertexStack& other)
{
    this->assign(other);
    return *this;
}

template <class T>
void VertexStack<T>::create(int space, int height, int size, int capacity, int growth)
{
    VertexClient<T> fresh(space, height * size, capacity, growth);
    this->setServer(*fresh.getServer());
    levels_.clear();
    for (int k = 0; k < height; ++k) {
        levels_.emplace_back(newLevel());
        Vertices<T>& level = *levels_.back();
        level.setServer(*this->server_);
        level.setSize(size, false);
        for (int i = 0; i < size; ++i) {
            level.setIndex(i, k * size + i);
        }
    }
}

template <class T>
void VertexStack<T>::takeLevels(const VertexStack& other)
{
    std::vector<std::unique_ptr<Vertices<T>>> levels;
    for (const auto& level : other.levels_) {
        levels.emplace_back(newLevel());
        levels.back()->assign(*level);
    }
    levels_.swap(levels);
}

template <class T>
void VertexStack<T>::assign(const VertexClient<T>& other)
{
    if (this == &other) {
        return;
    }
    takeLevels(dynamic_cast<const VertexStack&>(other));
    Shape<T>::assign(other);
}

template <class T>
void VertexStack<T>::detach()
{
    if (this->server_ == nullptr && levels_.empty()) {
        return;
    }
    const auto onOwnServer =
        std::count_if(levels_.begin(), levels_.end(),
                      [this](const auto& level) { return level->getServer() == this->server_; });
    if (this->server_ != nullptr && onOwnServer == getHeight() &&
        this->server_->getRefs() == getHeight() + 1) {
        return;
    }
    VertexClient<T> fresh(getSpace(), getNumVertices(), 0, 0);
    int slot = 0;
    for (const auto& level : levels_) {
        for (int i = 0; i < level->getSize(); ++i, ++slot) {
            *fresh.getServer()->vertex(slot) = (*level)[i];
        }
    }
    slot = 0;
    for (const auto& level : levels_) {
        level->setServer(*fresh.getServer());
        for (int i = 0; i < level->getSize(); ++i, ++slot) {
            level->setIndex(i, slot);
        }
    }
    this->setServer(*fresh.getServer());
}

template <class T>
VertexStack<T>* VertexStack<T>::clone() const
{
    return new VertexStack(*this);
}

template <class T>
int VertexStack<T>::getSpace() const
{
    return this->server_ == nullptr && !levels_.empty() ? levels_.front()->getSpace()
                                                        : Shape<T>::getSpace();
}

template <class T>
int VertexStack<T>::getNumVertices() const
{
    int count = 0;
    for (const auto& level : levels_) {
        count += level->getSize();
    }
    return count;
}

template <class T>
int VertexStack<T>::getShapeType() const
{
    return 7;
}

template <class T>
bool VertexStack<T>::isComposite() const
{
    return true;
}

template <class T>
Vector<T>& VertexStack<T>::operator[](const Vector<unsigned int>& locator)
{
    return (*this)[static_cast<int>(locator[0])][static_cast<int>(locator[1])];
}

template <class T>
const Vector<T>& VertexStack<T>::operator[](const Vector<unsigned int>& locator) const
{
    return (*this)[static_cast<int>(locator[0])][static_cast<int>(locator[1])];
}

template <class T>
int VertexStack<T>::read(std::istream& stream)
{
    const ClassicFormat format(stream);
    int type = 0;
    int space = 0;
    int height = 0;
    if (!readHeaderLine(stream, type) || !readHeaderLine(stream, space) ||
        !readHeaderLine(stream, height)) {
        return -1;
    }
    VertexClient<T> fresh(std::max(space, 0), 0, 0, 0);
    VertexServer<T>& server = *fresh.getServer();
    std::vector<std::unique_ptr<Vertices<T>>> levels;
    bool holds = canHold(stream, space, height);
    for (int k = 0; k < height && holds && stream; ++k) {
        int size = 0;
        if (!readHeaderLine(stream, size)) {
            break;
        }
        holds = canHold(stream, space, size);
        if (!holds) {
            break;
        }
        const int first = server.getSize();
        server.setSize(first + size);
        levels.emplace_back(newLevel());
        Vertices<T>& level = *levels.back();
        level.setServer(server);
        level.setSize(size, false);
        for (int i = 0; i < size; ++i) {
            level.setIndex(i, first + i);
            for (int c = 0; c < space && stream; ++c) {
                readNumber(stream, level[i][c]);
            }
        }
    }
    if (!holds) {
        stream.setstate(std::ios::failbit);
    }
    if (!stream) {
        return -1;
    }
    this->setServer(server);
    levels_.swap(levels);
    return type;
}

template <class T>
void VertexStack<T>::write(std::ostream& stream) const
{
    std::ostringstream text = textFor(stream);
    text << "# " << this->getShapeType() << "\n";
    text << "# " << getSpace() << "\n";
    text << "# " << getHeight() << "\n";
    for (const auto& level : levels_) {
        text << "\n\n# " << level->getSize() << "\n";
        for (int i = 0; i < level->getSize(); ++i) {
            const Vector<T>& vertex = (*level)[i];
            for (int c = 0; c < vertex.getSize(); ++c) {
                text << (c > 0 ? " " : "") << vertex[c];
            }
            text << "\n";
        }
    }
    writeText(stream, text, "void VertexStack<T>::write(ostream&) const");
}

template <class T>
void VertexStack<T>::print(const std::string& title, std::ostream& stream) const
{
    Shape<T>::print(title, stream);
    stream << " Height: " << getHeight() << "\n";
    for (int k = 0; k < getHeight(); ++k) {
        (*this)[k].print("Level " + std::to_string(k), stream);
    }
}

template <class T>
VertexIterator<T> VertexStack<T>::vertexIterator()
{
    return VertexIterator<T>(new __ConcreteVertexIterator(*this));
}

template <class T>
ConstVertexIterator<T> VertexStack<T>::vertexIterator() const
{
    return ConstVertexIterator<T>(new __ConcreteVertexIterator(*this));
}

template <class T>
std::vector<const Vertices<T>*> VertexStack<T>::levelPointers() const
{
    std::vector<const Vertices<T>*> pointers;
    for (const auto& level : levels_) {
        pointers.push_back(level.get());
    }
    return pointers;
}

template <class T>
void VertexStack<T>::append(const VertexStack& stack)
{
    // The stack may be this one.
    for (const Vertices<T>* level : stack.levelPointers()) {
        append(*level);
    }
}

template <class T>
void VertexStack<T>::prepend(const VertexStack& stack)
{
    const std::vector<const Vertices<T>*> levels = stack.levelPointers();
    for (auto level = levels.rbegin(); level != levels.rend(); ++level) {
        prepend(**level);
    }
}

template <class T>
void VertexStack<T>::append(const Vertices<T>& level)
{
    insert(static_cast<unsigned int>(getHeight()), level);
}

template <class T>
void VertexStack<T>::prepend(const Vertices<T>& level)
{
    insert(0, level);
}

template <class T>
void VertexStack<T>::insert(unsigned int i, const Vertices<T>& level)
{
    std::unique_ptr<Vertices<T>> copy(newLevel());
    copy->assign(level);
    if (this->server_ == nullptr && copy->getServer() != nullptr) {
        this->setServer(*copy->getServer());
    }
    levels_.insert(levels_.begin() + i, std::move(copy));
}

template <class T>
Vertices<T>* VertexStack<T>::newLevel() const
{
    return new Vertices<T>();
}

template <class T>
void VertexStack<T>::remove(int i)
{
    levels_.erase(levels_.begin() + i);
}

template <class T>
void VertexStack<T>::reverse()
{
    std::reverse(levels_.begin(), levels_.end());
}

template <class T>
void VertexStack<T>::sort(int c)
{
    std::stable_sort(levels_.begin(), levels_.end(), [c](const auto& a, const auto& b) {
        if (a->getSize() == 0 || b->getSize() == 0) {
            return a->getSize() == 0 && b->getSize() > 0;
        }
        return (*a)[0][c] < (*b)[0][c];
    });
}

template <class T>
VertexStack<T> VertexStack<T>::closestPointMap(const VertexStack& other) const
{
    VertexStack map(2, 0, 0, getNumVertices(), 0);
    for (int k = 0; k < getHeight(); ++k) {
        const Vertices<T>& source = (*this)[k];
        Vertices<T> places(2, source.getSize(), 0, 0);
        for (int i = 0; i < source.getSize(); ++i) {
            places[i].setZeros();
            const Vector<T>* nearest = nullptr;
            T smallest = 0;
            for (int level = 0; level < other.getHeight(); ++level) {
                for (int j = 0; j < other[level].getSize(); ++j) {
                    const T distance = squaredDistance(source[i], other[level][j]);
                    if (nearest == nullptr || distance < smallest) {
                        nearest = &other[level][j];
                        smallest = distance;
                        places[i][0] = static_cast<T>(level);
                        places[i][1] = static_cast<T>(j);
                    }
                }
            }
        }
        map.append(places);
    }
    map.detach();
    return map;
}

template <class T>
VertexStack<T>::__ConcreteVertexIterator::__ConcreteVertexIterator(const VertexStack& stack)
    : stack_(&stack)
{
    this->locator_.setSize(2);
    rewind();
}

template <class T>
VertexStack<T>::__ConcreteVertexIterator::__ConcreteVertexIterator(
    const __ConcreteVertexIterator& other)
    : ConcreteVertexIterator<T>(other)
    , stack_(other.stack_)
    , level_(other.level_)
    , inner_(other.inner_ == nullptr ? nullptr : other.inner_->clone())
{}

template <class T>
VertexStack<T>::__ConcreteVertexIterator::~__ConcreteVertexIterator() = default;

template <class T>
typename VertexStack<T>::__ConcreteVertexIterator*
VertexStack<T>::__ConcreteVertexIterator::clone() const
{
    return new __ConcreteVertexIterator(*this);
}

template <class T>
int VertexStack<T>::__ConcreteVertexIterator::currentServerIndex() const
{
    return inner_ == nullptr ? -1 : inner_->currentServerIndex();
}

template <class T>
void VertexStack<T>::__ConcreteVertexIterator::operator++(int)
{
    ++*this;
}

template <class T>
void VertexStack<T>::__ConcreteVertexIterator::operator++()
{
    if (this->current_ == nullptr) {
        return;
    }
    ++*inner_;
    if (inner_->current() == nullptr) {
        ++level_;
        enterLevel();
    }
    show();
}

template <class T>
void VertexStack<T>::__ConcreteVertexIterator::rewind()
{
    level_ = 0;
    enterLevel();
    show();
}

template <class T>
void VertexStack<T>::__ConcreteVertexIterator::enterLevel()
{
    using Inner = typename Vertices<T>::__ConcreteVertexIterator;
    inner_ = level_ < stack_->getHeight() ? std::make_unique<Inner>((*stack_)[level_]) : nullptr;
}

template <class T>
void VertexStack<T>::__ConcreteVertexIterator::show()
{
    this->current_ = inner_ == nullptr ? nullptr : inner_->current();
    this->locator_[0] = static_cast<unsigned int>(level_);
    this->locator_[1] = inner_ == nullptr ? 0 : inner_->locator()[0];
}

template class VertexStack<int>;
template class VertexStack<float>;
template class VertexStack<double>;
template class VertexStack<long double>;
