// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace mezalith::testing {

/// For tests of archives: an object that writes what a test says.
class Probe final : public platform::Archivable {
  public:
    using Write = std::function<void(platform::KeyedArchiver&)>;
    explicit Probe(Write write = {}) : write_(std::move(write)) {}
    std::string_view archiveClassName() const override { return "Probe"; }
    void encodeWithCoder(platform::KeyedArchiver& coder) const override {
        if (write_) write_(coder);
    }

  private:
    Write write_;
};

/// What a test asks of a probe's fields.
using Ask = std::function<void(const platform::KeyedUnarchiver&)>;

/// The classes of the platform and Probe, whose objects ask first; it may go without "spare".
inline platform::ArchiveClasses classesWithProbe(const Ask& ask) {
    auto classes = platform::ArchiveClasses::platformClasses();
    const auto make = [ask](const platform::KeyedUnarchiver& coder) {
        if (ask) ask(coder);
        return std::make_shared<const Probe>();
    };
    classes.add("Probe", make, {"spare"});
    return classes;
}

/// The archive of a probe that writes so.
inline std::string archivedProbe(const Probe::Write& write) {
    const Probe probe(write);
    return platform::archivedText(&probe);
}

/// An archive with this root.
inline std::string documentOf(const std::string& root) {
    return R"({"format":"mezalith archive","version":1,"root":)" + root + "}";
}

/// One whose root is a probe with these fields.
inline std::string probeDocument(const std::string& fields) {
    return documentOf(R"({"class":"Probe",)" + fields + "}");
}

}  // namespace mezalith::testing
