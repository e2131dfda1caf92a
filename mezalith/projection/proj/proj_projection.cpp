// SPDX-License-Identifier: MIT
#include "mezalith/projection/proj/proj_handles.hpp"
#include "mezalith/projection/proj/proj_method.hpp"
#include "mezalith/projection/proj/projection_gaps.hpp"
#include <mezalith/projection/proj/proj_projection.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <string_view>
#include <utility>
#include <vector>

namespace mezalith {
namespace {

using detail::ProjContext;
using detail::ProjObject;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kRadians = std::numbers::pi / 180;
constexpr double kStep = 1.0 / 7200;  // degrees, half an arc-second
constexpr double kPolar = 89.5;

/// Lines each way of the grid from which an extent is taken.
constexpr int kGrid = 64;

bool isCode(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == 0 || colon == std::string_view::npos || colon + 1 == text.size()) return false;
    return std::ranges::all_of(text, [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == ':' || c == '_';
    });
}

std::string upperCased(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    });
    return text;
}

/// What the library understands as a reference system; empty for other texts.
std::string definitionOf(const std::string& text) {
    if (text.starts_with('+')) return text + " +type=crs";
    return isCode(text) ? upperCased(text) : "";
}

/// The number of an EPSG code; for other texts a negative one by Fowler, Noll and Vo's hash.
std::int64_t sridOf(const std::string& definition) {
    constexpr std::string_view kEpsg = "EPSG:";
    std::int64_t code = 0;
    if (definition.starts_with(kEpsg)) {
        const char* end = definition.data() + definition.size();
        if (std::from_chars(definition.data() + kEpsg.size(), end, code).ptr == end) return code;
    }
    std::uint64_t hash = 14695981039346656037u;
    for (const char c : definition) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return -static_cast<std::int64_t>(hash >> 1) - 1;
}

bool isPlane(PJ_TYPE type) {
    return type == PJ_TYPE_PROJECTED_CRS || type == PJ_TYPE_GEOGRAPHIC_2D_CRS ||
           type == PJ_TYPE_GEOGRAPHIC_3D_CRS;
}

/// The system itself, without a height and without a transformation to another.
ProjObject planeSystemOf(PJ_CONTEXT* context, ProjObject system) {
    if (system != nullptr && proj_get_type(system.get()) == PJ_TYPE_COMPOUND_CRS) {
        system.reset(proj_crs_get_sub_crs(context, system.get(), 0));
    }
    if (system != nullptr && proj_get_type(system.get()) == PJ_TYPE_BOUND_CRS) {
        system.reset(proj_get_source_crs(context, system.get()));
    }
    if (system == nullptr || !isPlane(proj_get_type(system.get()))) return nullptr;
    return system;
}

MzRect areaOf(PJ_CONTEXT* context, const PJ* system) {
    double west = 0, south = 0, east = 0, north = 0;
    const bool isKnown =
        proj_get_area_of_use(context, system, &west, &south, &east, &north, nullptr) != 0;
    if (!isKnown || west < -180) return MzZeroRect;
    return {{west, south}, {east - west + (east < west ? 360 : 0), north - south}};
}

/// Keeps the last message of the library, instead of writing it to standard error.
void keepMessage(void* kept, int /*level*/, const char* message) {
    if (message != nullptr) *static_cast<std::string*>(kept) = message;
}

}  // namespace

/// The library's objects, with the context that all of them need.
class MzProjProjection::Library {
  public:
    Library() : context_(proj_context_create()) {
        proj_context_set_enable_network(context_.get(), 0);
        proj_log_func(context_.get(), &message_, keepMessage);
    }

    /// Whether there is a way from WGS 84 to the system so defined.
    bool open(const std::string& definition) {
        ProjObject whole(proj_create(context_.get(), definition.c_str()));
        if (whole == nullptr) return false;
        const ProjObject source(proj_create(context_.get(), "EPSG:4326"));
        const ProjObject raw(proj_create_crs_to_crs_from_pj(context_.get(), source.get(),
                                                            whole.get(), nullptr, nullptr));
        area_ = areaOf(context_.get(), whole.get());
        if (const char* name = proj_get_name(whole.get())) name_ = name;
        system_ = planeSystemOf(context_.get(), std::move(whole));
        if (system_ == nullptr) {
            message_ = "it is no system of longitude and latitude or of a map's plane";
            return false;
        }
        if (raw == nullptr) return false;
        operation_.reset(proj_normalize_for_visualization(context_.get(), raw.get()));
        if (operation_ == nullptr) return false;
        region_ = detail::regionOf(detail::methodOf(context_.get(), system_.get()), area_);
        if (region_.shape == MzProjectionRegion::Shape::Band && region_.reach > 90) {
            region_.gaps = detail::gapsOf(
                [this](std::span<MzPoint> points) { transform(PJ_FWD, points); }, region_);
        }
        return true;
    }

    std::string message() const {
        const std::string_view prefix = "proj_create: ";
        std::string text = message_.empty() ? "PROJ does not know it" : message_;
        if (text.starts_with(prefix)) text.erase(0, prefix.size());
        std::ranges::replace(text, '\n', ' ');
        return text;
    }
    /// That of the system; empty for those that have none.
    std::string name() const { return name_ == "unknown" ? "" : name_; }
    MzRect area() const { return area_; }
    const MzProjectionRegion& region() const { return region_; }

    /// In place; points without an image become NaN.
    void transform(PJ_DIRECTION direction, std::span<MzPoint> points) const {
        if (points.empty()) return;
        constexpr std::size_t kStride = sizeof(MzPoint);
        proj_trans_generic(operation_.get(), direction, &points[0].x, kStride, points.size(),
                           &points[0].y, kStride, points.size(), nullptr, 0, 0, nullptr, 0, 0);
        proj_errno_reset(operation_.get());
        for (MzPoint& p : points) {
            if (!std::isfinite(p.x) || !std::isfinite(p.y)) p = {kNaN, kNaN};
        }
    }

  private:
    std::string message_;
    ProjContext context_;
    ProjObject system_;
    ProjObject operation_;
    std::string name_;
    MzRect area_ = MzZeroRect;
    MzProjectionRegion region_;
};

MzProjProjection::MzProjProjection() = default;
MzProjProjection::~MzProjProjection() = default;

std::shared_ptr<MzProjProjection> MzProjProjection::initWithText(const std::string& text,
                                                                 std::string* error) {
    const auto refuse = [error](std::string reason) {
        if (error != nullptr) *error = std::move(reason);
        return nullptr;
    };
    const std::string definition = definitionOf(text);
    if (definition.empty()) return refuse("it is neither AUTHORITY:CODE nor a PROJ string");
    auto library = std::make_unique<Library>();
    if (!library->open(definition)) return refuse(library->message());
    std::shared_ptr<MzProjProjection> projection(new MzProjProjection);
    projection->text_ = text;
    projection->area_ = library->area();
    projection->setSrid(sridOf(definition));
    projection->setName(library->name().empty() ? text : library->name());
    projection->library_ = std::move(library);
    projection->setBounds(projection->projectedExtent());
    projection->setMaximumResolution(projection->bounds().size.width * 1e-8);
    projection->setMinimumResolution(projection->bounds().size.width / 256);
    return projection;
}

MzPoint MzProjProjection::projectedCoordinateForLongitudeLatitude(MzPoint point) const {
    library_->transform(PJ_FWD, {&point, 1});
    return point;
}

MzPoint MzProjProjection::longitudeLatitudeForProjectedCoordinate(MzPoint point) const {
    library_->transform(PJ_INV, {&point, 1});
    return point;
}

double MzProjProjection::metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const {
    constexpr double a = 6378137.0, e2 = 0.0066943799901413165;
    const double sine = std::sin(point.y * kRadians);
    const double root = std::sqrt(1 - e2 * sine * sine);
    const bool isPolar = std::abs(point.y) > kPolar;
    const double away = std::copysign(kStep, -point.y);  // from the pole
    const MzPoint from = isPolar ? point : MzPoint{point.x - kStep, point.y};
    const MzPoint to =
        isPolar ? MzPoint{point.x, point.y + 2 * away} : MzPoint{point.x + kStep, point.y};
    const double radius =
        isPolar ? a * (1 - e2) / (root * root * root) : a / root * std::cos(point.y * kRadians);
    const MzPoint p = projectedCoordinateForLongitudeLatitude(from);
    const MzPoint q = projectedCoordinateForLongitudeLatitude(to);
    return radius * 2 * kStep * kRadians / std::hypot(q.x - p.x, q.y - p.y);
}

void MzProjProjection::projectCoordinates(std::span<const MzPoint> source,
                                          std::span<MzPoint> destination) const {
    const std::size_t count = std::min(source.size(), destination.size());
    if (source.data() != destination.data()) {
        std::copy_n(source.begin(), count, destination.begin());
    }
    library_->transform(PJ_FWD, destination.first(count));
}

void MzProjProjection::unprojectCoordinates(std::span<const MzPoint> source,
                                            std::span<MzPoint> destination) const {
    const std::size_t count = std::min(source.size(), destination.size());
    if (source.data() != destination.data()) {
        std::copy_n(source.begin(), count, destination.begin());
    }
    library_->transform(PJ_INV, destination.first(count));
}

MzProjectionRegion MzProjProjection::region() const { return library_->region(); }

MzRect MzProjProjection::projectedExtent() const {
    const MzProjectionRegion region = library_->region();
    // A hair less than everything, which rounding would put outside.
    const double reach = region.shape == MzProjectionRegion::Shape::Cap ? 180 : region.reach - 1e-9;
    const MzRect shown{{region.centre.x - reach, region.south},
                       {2 * reach, region.north - region.south}};
    const MzRect area = area_.size.width > 0 ? area_ : shown;
    std::vector<MzPoint> points;
    for (int i = 0; i <= kGrid; ++i) {
        for (int j = 0; j <= kGrid; ++j) {
            const MzPoint p{area.origin.x + area.size.width * i / kGrid,
                            area.origin.y + area.size.height * j / kGrid};
            if (region.holds(p)) points.push_back(p);
        }
    }
    library_->transform(PJ_FWD, points);
    std::erase_if(points, [](MzPoint p) { return std::isnan(p.x); });
    if (points.empty()) return MzZeroRect;
    const auto [west, east] = std::ranges::minmax(points, {}, &MzPoint::x);
    const auto [south, north] = std::ranges::minmax(points, {}, &MzPoint::y);
    return {{west.x, south.y}, {east.x - west.x, north.y - south.y}};
}

std::shared_ptr<MzProjProjection> MzProjProjection::copy() const {
    return std::static_pointer_cast<MzProjProjection>(MzMapProjection::copy());
}

std::shared_ptr<MzMapProjection> MzProjProjection::newInstance() const {
    return initWithText(text_);
}

}  // namespace mezalith
