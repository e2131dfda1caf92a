// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// The classes whose objects an archive may hold: for each name what makes an object of it. An
/// archive read with it makes objects of no other class.
class MEZALITH_EXPORT ArchiveClasses {
  public:
    /// Reads an object's fields; null when they do not make one.
    using InitWithCoder = std::function<std::shared_ptr<const Archivable>(const KeyedUnarchiver&)>;

    /// No classes.
    ArchiveClasses() = default;
    /// The platform's own: "Color" and "Shadow".
    static ArchiveClasses platformClasses();

    /// Adds a class, or replaces the one of this name.
    void add(std::string_view name, InitWithCoder initWithCoder);

    bool contains(std::string_view name) const;
    /// An object of the class; null for an unknown name or when the class answers null.
    std::shared_ptr<const Archivable> make(std::string_view name,
                                           const KeyedUnarchiver& coder) const;

  private:
    std::map<std::string, InitWithCoder, std::less<>> classes_;
};

}  // namespace mezalith::platform
