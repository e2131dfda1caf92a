// SPDX-License-Identifier: MIT
#include <mezalith/geometry/affine_transform.hpp>
#include <mezalith/platform/log.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <typeinfo>

namespace mezalith {
namespace {

// Values beyond single precision round to infinity, as IEEE 754 has it.
static_assert(std::numeric_limits<float>::is_iec559);

double singlePrecision(double value) { return static_cast<float>(value); }

}  // namespace

std::shared_ptr<MzAffineTransform> MzAffineTransform::transform() {
    return std::make_shared<MzAffineTransform>();
}

std::shared_ptr<MzAffineTransform> MzAffineTransform::initWithTransform(
    const MzAffineTransform* other) {
    auto result = transform();
    result->values_ =
        other == nullptr ? platform::AffineTransform{0, 0, 0, 0, 0, 0} : other->values_;
    return result;
}

void MzAffineTransform::translateXBy(double tx, double ty) {
    const MzPoint origin = transformPoint({tx, ty});
    values_.tX = origin.x;
    values_.tY = origin.y;
}

void MzAffineTransform::rotateByDegrees(double degrees) {
    rotateByRadians(degrees * std::numbers::pi / 180);
}

void MzAffineTransform::rotateByRadians(double radians) {
    const double s = singlePrecision(std::sin(radians));
    const double c = singlePrecision(std::cos(radians));
    const auto [m11, m12, m21, m22, tX, tY] = values_;
    values_ = {s * m21 + c * m11, s * m22 + c * m12, c * m21 - s * m11, c * m22 - s * m12, tX, tY};
}

void MzAffineTransform::scaleBy(double factor) { scaleXBy(factor, factor); }

void MzAffineTransform::scaleXBy(double sx, double sy) {
    values_.m11 *= sx;
    values_.m12 *= sx;
    values_.m21 *= sy;
    values_.m22 *= sy;
}

void MzAffineTransform::invert() {
    const auto [m11, m12, m21, m22, tX, tY] = values_;
    const double determinant = singlePrecision(m11 * m22 - m12 * m21);
    if (determinant == 0) {
        platform::log("error: determinant of matrix is 0!");
        return;
    }
    values_ = {singlePrecision(m22 / determinant),
               singlePrecision(-m12 / determinant),
               singlePrecision(-m21 / determinant),
               singlePrecision(m11 / determinant),
               singlePrecision((m21 * tY - m22 * tX) / determinant),
               singlePrecision((m12 * tX - m11 * tY) / determinant)};
}

void MzAffineTransform::appendTransform(const MzAffineTransform* other) {
    if (other != nullptr) values_ = other->values_.prepending(values_);
}

void MzAffineTransform::prependTransform(const MzAffineTransform* other) {
    if (other != nullptr) values_ = values_.prepending(other->values_);
}

MzPoint MzAffineTransform::transformPoint(MzPoint point) const {
    return values_.transformPoint(point);
}

void MzAffineTransform::transformPoints(std::span<const MzPoint> source,
                                        std::span<MzPoint> destination) const {
    values_.transformPoints(source, destination);
}

MzSize MzAffineTransform::transformSize(MzSize size) const {
    const MzSize signedSize = values_.transformSize(size);
    return {std::abs(signedSize.width), std::abs(signedSize.height)};
}

MzRect MzAffineTransform::transformRect(MzRect rect) const {
    return {transformPoint(rect.origin), transformSize(rect.size)};
}

platform::AffineTransform MzAffineTransform::transformStruct() const { return values_; }

void MzAffineTransform::setTransformStruct(const platform::AffineTransform& values) {
    values_ = values;
}

platform::AffineTransform MzAffineTransform::singlePrecisionTransformStruct() const {
    return values_;
}

platform::AffineTransform MzAffineTransform::nsTransform() const {
    return singlePrecisionTransformStruct();
}

void MzAffineTransform::getMatrix(double* matrix) const {
    if (matrix == nullptr) return;
    const auto [m11, m12, m21, m22, tX, tY] = values_;
    std::ranges::copy(Matrix{m11, m12, m21, m22, tX, tY}, matrix);
}

void MzAffineTransform::setMatrix(const double* matrix) {
    if (matrix == nullptr) return;
    values_ = {matrix[0], matrix[1], matrix[2], matrix[3], matrix[4], matrix[5]};
}

std::shared_ptr<MzAffineTransform> MzAffineTransform::copy() const {
    auto result = newInstance();
    result->values_ = values_;
    return result;
}

bool MzAffineTransform::isEqual(const platform::Object* other) const {
    if (other == nullptr || typeid(*this) != typeid(*other)) return false;
    return values_ == static_cast<const MzAffineTransform*>(other)->values_;
}

void MzAffineTransform::encodeWithCoder(platform::Archiver& coder) const {
    Matrix matrix;
    getMatrix(matrix.data());
    coder.encodeArray(matrix);
}

std::shared_ptr<MzAffineTransform> MzAffineTransform::initWithCoder(platform::Unarchiver& coder) {
    Matrix matrix;
    if (!coder.decodeArray(matrix)) return nullptr;
    auto result = transform();
    result->setMatrix(matrix.data());
    return result;
}

std::shared_ptr<MzAffineTransform> MzAffineTransform::newInstance() const { return transform(); }

}  // namespace mezalith
