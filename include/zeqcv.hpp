/*
 * zeqcv.hpp: a thin C++17 layer over zeqcv.h. Header-only; it computes
 * nothing itself.
 *
 * - Owners: move-only handles that release what the library allocated
 *   (zeqsMalloc blocks, FFT specifications, morphology states, work buffers
 *   sized by a GetSize or GetBufSize query) on every path.
 * - ImageView / Image: (pointer, step, size) of a region, and an owning image
 *   with 32-byte-aligned rows. zeqcv::call() passes each view as its
 *   (pointer, step) pair and zeqcv::roi as the size of the first view.
 * - Errors stay status codes unless asked otherwise: zeqcv::check() (or
 *   ZEQCV_CHECKED) throws zeqcv::Error for a negative status.
 *
 *     zeqcv::Image<Zeq8u> a(640, 480), b(640, 480), d(640, 480);
 *     ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, a, b, d, zeqcv::roi);
 *     zeqcv::FFT2DSpecR spec;
 *     zeqcv::check(spec.init(zeqiFFTInitAlloc_R_32f, 9, 9, zeqFftScaleInvByN, 0));
 */
#ifndef ZEQCV_HPP
#define ZEQCV_HPP

#include "zeqcv.h"

#include <climits>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace zeqcv {

/* ---- Errors (opt-in) ---- */

class Error : public std::runtime_error {
public:
    Error(ZeqStatus status, const std::string& what) : std::runtime_error(what), status_(status) {}
    ZeqStatus status() const noexcept { return status_; }

private:
    ZeqStatus status_;
};

/* Throws Error for an error status (negative), naming `what` and the status;
 * returns success and warnings unchanged. */
inline ZeqStatus check(ZeqStatus status, const char* what = nullptr) {
    if (status < 0) {
        std::string text = what ? std::string(what) + ": " : std::string();
        throw Error(status, text + zeqcvStatusString(status));
    }
    return status;
}

/* ---- Owners ---- */

/* One library object of type T, released with Free (an InitAlloc's partner). */
template <class T, auto Free>
class Owner {
public:
    Owner() = default;
    explicit Owner(T* object) noexcept : p_(object) {}
    Owner(Owner&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    Owner& operator=(Owner&& other) noexcept {
        if (this != &other) reset(std::exchange(other.p_, nullptr));
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { reset(); }

    T* get() const noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    T* release() noexcept { return std::exchange(p_, nullptr); }
    void reset(T* object = nullptr) noexcept {
        if (p_) (void)Free(p_);
        p_ = object;
    }

    /* Runs an InitAlloc, giving it the address of a new T* where it takes one
     * (first or last argument), and keeps the object it made. On failure the
     * owner keeps what it had and the status is returned. */
    template <class F, class... Args>
    ZeqStatus init(F&& initAlloc, Args&&... args) {
        T* object = nullptr;
        ZeqStatus status;
        if constexpr (std::is_invocable_v<F, T**, Args...>)
            status = initAlloc(&object, std::forward<Args>(args)...);
        else
            status = initAlloc(std::forward<Args>(args)..., &object);
        if (status >= 0 && object) reset(object);
        return status;
    }

private:
    T* p_ = nullptr;
};

using FFTSpecC = Owner<ZeqsFFTSpec_C_32fc, zeqsFFTFree_C_32fc>;
using FFTSpecR = Owner<ZeqsFFTSpec_R_32f, zeqsFFTFree_R_32f>;
using FFT2DSpecR = Owner<ZeqiFFTSpec_R_32f, zeqiFFTFree_R_32f>;
using MorphState = Owner<ZeqiMorphState, zeqiMorphologyFree>;

/* len elements of T in one block from zeqsMalloc_8u (32-byte aligned,
 * uncleared). Empty after a failed allocation: test it. */
template <class T>
class Buffer {
    static_assert(std::is_trivially_copyable_v<T>, "library memory holds plain data");

public:
    Buffer() = default;
    explicit Buffer(long long len) { allocate(len); }
    Buffer(Buffer&& other) noexcept
        : p_(std::exchange(other.p_, nullptr)), len_(std::exchange(other.len_, 0)) {}
    Buffer& operator=(Buffer&& other) noexcept {
        if (this != &other) {
            reset();
            p_ = std::exchange(other.p_, nullptr);
            len_ = std::exchange(other.len_, 0);
        }
        return *this;
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer() { reset(); }

    T* data() const noexcept { return p_; }
    long long size() const noexcept { return len_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    void reset() noexcept {
        zeqsFree(p_);
        p_ = nullptr;
        len_ = 0;
    }
    /* Replaces the block by one of len elements; false (and empty) when that
     * many bytes do not fit the allocator's int length or memory ran out. */
    bool allocate(long long len) {
        reset();
        if (len < 1 || len > INT_MAX / (long long)sizeof(T)) return false;
        p_ = reinterpret_cast<T*>(zeqsMalloc_8u(int(len * (long long)sizeof(T))));
        len_ = p_ ? len : 0;
        return p_ != nullptr;
    }

    /* Sizes the block with a GetSize or GetBufSize query: query(args..., &bytes).
     * A size of 0 leaves the buffer empty (a null work buffer). Returns the
     * query's status, or zeqStsNoMem when the bytes could not be allocated. */
    template <class F, class... Args>
    ZeqStatus sized(F&& query, Args&&... args) {
        static_assert(sizeof(T) == 1, "work buffers are counted in bytes");
        int bytes = 0;
        const ZeqStatus status = query(std::forward<Args>(args)..., &bytes);
        if (status < 0) return status;
        if (bytes <= 0) {
            reset();
            return status;
        }
        return allocate(bytes) ? status : ZeqStatus(zeqStsNoMem);
    }

private:
    T* p_ = nullptr;
    long long len_ = 0;
};

/* ---- Images ---- */

/* A region of an image in someone else's memory: its first pixel, the step in
 * bytes between rows, the size in pixels and the elements per pixel. */
template <class T>
struct ImageView {
    T* data = nullptr;
    int step = 0;
    ZeqiSize size = {0, 0};
    int channels = 1;

    ImageView() = default;
    ImageView(T* first, int rowStep, ZeqiSize regionSize, int elementsPerPixel = 1)
        : data(first), step(rowStep), size(regionSize), channels(elementsPerPixel) {}
    /* A view of T converts to a view of const T. */
    template <class U, class = std::enable_if_t<std::is_same_v<const U, T>>>
    ImageView(const ImageView<U>& other) : data(other.data), step(other.step), size(other.size), channels(other.channels) {}

    int width() const noexcept { return size.width; }
    int height() const noexcept { return size.height; }
    T* row(int y) const noexcept {
        using Byte = std::conditional_t<std::is_const_v<T>, const unsigned char, unsigned char>;
        return reinterpret_cast<T*>(reinterpret_cast<Byte*>(data) + std::ptrdiff_t(y) * step);
    }
    T& at(int x, int y, int c = 0) const noexcept { return row(y)[std::ptrdiff_t(x) * channels + c]; }
    /* The part of this region in `r` (which the caller keeps inside it). */
    ImageView sub(ZeqiRect r) const noexcept {
        return ImageView(row(r.y) + std::ptrdiff_t(r.x) * channels, step, {r.width, r.height}, channels);
    }
};

/* An owned image whose rows start 32-byte aligned. Empty (test it) when the
 * size is not positive, a row does not fit an int step, or memory ran out. */
template <class T>
class Image {
public:
    Image() = default;
    Image(int width, int height, int channels = 1) {
        if (width < 1 || height < 1 || channels < 1) return;
        const long long row = (long long)width * channels * (long long)sizeof(T);
        const long long step = (row + 31) / 32 * 32;
        if (step > INT_MAX || step * height > (long long)INT_MAX) return;  // the allocator's int length
        if (!buffer_.allocate(step * height / (long long)sizeof(T))) return;
        view_ = ImageView<T>(buffer_.data(), int(step), {width, height}, channels);
    }

    explicit operator bool() const noexcept { return bool(buffer_); }
    ImageView<T> view() noexcept { return view_; }
    ImageView<const T> view() const noexcept { return view_; }
    operator ImageView<T>() noexcept { return view_; }
    operator ImageView<const T>() const noexcept { return view_; }
    T* data() noexcept { return view_.data; }
    const T* data() const noexcept { return view_.data; }
    int step() const noexcept { return view_.step; }
    ZeqiSize size() const noexcept { return view_.size; }
    int width() const noexcept { return view_.size.width; }
    int height() const noexcept { return view_.size.height; }
    int channels() const noexcept { return view_.channels; }
    T* row(int y) noexcept { return view_.row(y); }
    const T* row(int y) const noexcept { return view_.row(y); }

private:
    Buffer<T> buffer_;
    ImageView<T> view_;
};

/* Stands for the size of the first image among call()'s arguments. */
struct Roi {};
inline constexpr Roi roi{};

namespace detail {
template <class A>
struct ViewOf {
    static constexpr bool value = false;
};
template <class T>
struct ViewOf<ImageView<T>> {
    static constexpr bool value = true;
    static ImageView<T> get(const ImageView<T>& v) { return v; }
};
template <class T>
struct ViewOf<Image<T>> {
    static constexpr bool value = true;
    static ImageView<T> get(Image<T>& i) { return i.view(); }
    static ImageView<const T> get(const Image<T>& i) { return i.view(); }
};

template <class A>
auto expand(const ZeqiSize& size, A&& a) {
    using D = std::remove_cv_t<std::remove_reference_t<A>>;
    if constexpr (ViewOf<D>::value) {
        auto v = ViewOf<D>::get(a);
        return std::make_tuple(v.data, v.step);
    } else if constexpr (std::is_same_v<D, Roi>) {
        return std::make_tuple(size);
    } else {
        return std::tuple<A&&>(std::forward<A>(a));
    }
}

template <class... A>
ZeqiSize firstSize(A&&... a) {
    ZeqiSize size = {0, 0};
    bool found = false;
    auto take = [&](auto&& x) {
        using D = std::remove_cv_t<std::remove_reference_t<decltype(x)>>;
        if constexpr (ViewOf<D>::value) {
            if (!found) size = ViewOf<D>::get(x).size;
            found = true;
        }
    };
    (take(a), ...);
    return size;
}
}  // namespace detail

/* Calls a library function with every ImageView or Image argument passed as
 * its (pointer, step) pair and zeqcv::roi as the first image's size; all other
 * arguments go through unchanged. Returns the function's status:
 *     zeqcv::call(zeqiSobel3x3_Dy_8u16s_C1R, src, dy, 0, zeqcv::roi)
 * is zeqiSobel3x3_Dy_8u16s_C1R(src.data, src.step, dy.data, dy.step, 0, src.size). */
template <class F, class... Args>
ZeqStatus call(F&& function, Args&&... args) {
    const ZeqiSize size = detail::firstSize(args...);
    return std::apply(std::forward<F>(function), std::tuple_cat(detail::expand(size, std::forward<Args>(args))...));
}

}  // namespace zeqcv

/* call() followed by check(), naming the function in the error. */
#define ZEQCV_CHECKED(function, ...) ::zeqcv::check(::zeqcv::call(function, __VA_ARGS__), #function)

#endif /* ZEQCV_HPP */
