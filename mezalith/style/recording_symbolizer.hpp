// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/archiver.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mezalith::testing {

/// Draws nothing, but writes what it is asked for to a log that it shares with others.
class RecordingSymbolizer : public MzSymbolizer {
  public:
    using Log = std::vector<std::string>;

    RecordingSymbolizer(std::string name, Log* log) : name_(std::move(name)), log_(log) {}

    bool isHit = false;
    std::uint32_t type = 0;
    MzSpatialObjectDrawAdditions* lastObject = nullptr;
    MzDrawContext* lastContext = nullptr;
    MzPoint lastPoint{};

    /// A property that its drawing depends on.
    void setSize(int size) { setProperty("size", size_, size); }
    std::vector<std::string> drawPropertyKeyPaths() const override { return {"size"}; }
    std::uint32_t symbolizerType() const override { return type; }

    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override {
        note(selected ? "draw selected" : "draw", object, context);
    }
    bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                         MzDrawContext* context, bool selected) override {
        lastPoint = point;
        note(selected ? "test selected" : "test", object, context);
        return isHit;
    }
    void didRemoveFromContext(MzDrawContext* context,
                              MzSpatialObjectDrawAdditions* object) override {
        note("removed", object, context);
    }

  private:
    void note(const char* what, MzSpatialObjectDrawAdditions* object, MzDrawContext* context) {
        lastObject = object;
        lastContext = context;
        log_->push_back(what + (" " + name_));
    }

    std::string name_;
    Log* log_;
    int size_ = 0;
};

/// One that can be archived.
class ArchivableRecordingSymbolizer : public RecordingSymbolizer, public platform::Archivable {
  public:
    using RecordingSymbolizer::RecordingSymbolizer;
    std::string_view archiveClassName() const override { return "RecordingSymbolizer"; }
    void encodeWithCoder(platform::KeyedArchiver&) const override {}
};

}  // namespace mezalith::testing
