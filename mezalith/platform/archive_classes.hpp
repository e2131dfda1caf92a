// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// The classes whose objects an archive may hold: for each name what makes an object of it. An
/// archive read with it makes objects of no other class.
class MEZALITH_EXPORT ArchiveClasses {
  public:
    /// Reads an object's fields; null when they do not make one.
    using InitWithCoder = std::function<std::shared_ptr<const Archivable>(const KeyedUnarchiver&)>;
    /// Makes an object of its `archiveText`; null, and the reason, when it is none.
    using InitWithText = std::function<std::shared_ptr<const Archivable>(std::string_view text,
                                                                         std::string& reason)>;
    using Keys = std::vector<std::string>;

    /// No classes.
    ArchiveClasses() = default;
    /// The platform's own: "Color" and "Shadow".
    static ArchiveClasses platformClasses();

    /// Adds a class, or replaces the one of this name. Where archives are read strictly, all keys
    /// that the class asks for must be there but the `optional` ones.
    void add(std::string_view name, InitWithCoder initWithCoder, Keys optional = {});
    /// Lets objects of the class be given as text.
    void addText(std::string_view name, InitWithText initWithText);

    bool contains(std::string_view name) const;
    bool isOptional(std::string_view name, std::string_view key) const;
    /// In the order of their letters.
    std::vector<std::string_view> names() const;

    /// An object of the class; null for an unknown name or when the class answers null.
    std::shared_ptr<const Archivable> make(std::string_view name,
                                           const KeyedUnarchiver& coder) const;
    /// The same of a text; null, and the reason, when it makes none or the class has no such form.
    std::shared_ptr<const Archivable> makeFromText(std::string_view name, std::string_view text,
                                                   std::string& reason) const;

  private:
    struct Entry {
        InitWithCoder initWithCoder;
        InitWithText initWithText;
        Keys optional;
    };
    std::map<std::string, Entry, std::less<>> classes_;
};

}  // namespace mezalith::platform
