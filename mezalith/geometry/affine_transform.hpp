// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/affine_transform.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/object.hpp>

#include <array>
#include <memory>
#include <span>

namespace mezalith {

/// The library's mutable plane transform in row-vector form:
///
///     x' = m11·x + m21·y + tX      y' = m12·x + m22·y + tY
///
/// Operations are prepended: the latest one applies first to a point.
/// Settled: `rotateByRadians` and `invert` round to single precision. For an inverse in full
/// precision take `nsTransform().inverse()`.
class MEZALITH_EXPORT MzAffineTransform : public platform::Object {
  public:
    /// The six values m11, m12, m21, m22, tX, tY.
    using Matrix = std::array<double, 6>;
    static constexpr Matrix identityTransform{1, 0, 0, 1, 0, 0};

    /// The identity.
    MzAffineTransform() = default;
    static std::shared_ptr<MzAffineTransform> transform();
    /// A copy of `other`; with null a matrix of zeros, which maps every point to (0, 0).
    static std::shared_ptr<MzAffineTransform> initWithTransform(const MzAffineTransform* other);

    void translateXBy(double tx, double ty);
    /// As `rotateByRadians`, with degrees · pi / 180.
    void rotateByDegrees(double degrees);
    /// Counter-clockwise. Sine and cosine are taken in double and rounded to single precision.
    void rotateByRadians(double radians);
    void scaleBy(double factor);
    void scaleXBy(double sx, double sy);
    /// Becomes its own inverse, each value rounded to single precision. A determinant that is 0 in
    /// single precision logs "error: determinant of matrix is 0!" and changes nothing; one beyond
    /// single precision gives zeros.
    void invert();
    /// Becomes this followed by `other`; nothing for null.
    void appendTransform(const MzAffineTransform* other);
    /// Becomes `other` followed by this; nothing for null.
    void prependTransform(const MzAffineTransform* other);

    MzPoint transformPoint(MzPoint point) const;
    /// Maps the points of `source` into `destination`, which may be the same memory: as many as
    /// both have places for. Same results as `transformPoint`, bit for bit.
    void transformPoints(std::span<const MzPoint> source, std::span<MzPoint> destination) const;
    /// Without the translation, both components made non-negative.
    MzSize transformSize(MzSize size) const;
    /// Origin by `transformPoint`, size by `transformSize`: not a bounding box under rotation.
    MzRect transformRect(MzRect rect) const;

    platform::AffineTransform transformStruct() const;
    void setTransformStruct(const platform::AffineTransform& values);
    /// The same six values, unchanged.
    platform::AffineTransform singlePrecisionTransformStruct() const;
    platform::AffineTransform nsTransform() const;
    /// Copies the six values out to, and in from, an array of six; nothing for null.
    void getMatrix(double* matrix) const;
    void setMatrix(const double* matrix);

    std::shared_ptr<MzAffineTransform> copy() const;
    /// YES when `other` is of exactly the same class and all six values are equal.
    bool isEqual(const platform::Object* other) const;

    /// Writes the six values as one array of doubles.
    void encodeWithCoder(platform::Archiver& coder) const;
    /// Reads such an array; null when the archive holds something else there.
    static std::shared_ptr<MzAffineTransform> initWithCoder(platform::Unarchiver& coder);

  protected:
    /// A fresh object of the receiver's own class, for `copy`.
    virtual std::shared_ptr<MzAffineTransform> newInstance() const;

  private:
    platform::AffineTransform values_;
};

}  // namespace mezalith
