// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/cbor_document.hpp>
#include <mezalith/platform/json/json_document.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/platform/json/tree_archiver.hpp>
#include <mezalith/platform/json/tree_unarchiver.hpp>

#include <optional>
#include <utility>

namespace mezalith::platform {
namespace {

detail::ArchiveValue documentOf(const Archivable* root) {
    return detail::framed(detail::kRootKey, detail::treeOf(root));
}

/// The object of a document that was read without an error, if it was.
std::shared_ptr<const Archivable> objectIn(std::optional<detail::ArchiveValue> document,
                                           const ArchiveClasses& classes,
                                           std::string_view rootClass,
                                           detail::ArchiveError& error) {
    if (!document) return nullptr;
    const auto root = detail::contentOf(std::move(*document), detail::kRootKey, error);
    return root ? detail::objectOf(*root, classes, rootClass, error) : nullptr;
}

}  // namespace

std::string archivedText(const Archivable* root) { return detail::jsonText(documentOf(root)); }

std::vector<std::byte> archivedBytes(const Archivable* root) {
    return detail::cborBytes(documentOf(root));
}

UnarchivedObject unarchivedText(std::string_view text, const ArchiveClasses& classes,
                                std::string_view rootClass) {
    detail::ArchiveError error;
    UnarchivedObject result;
    result.object = objectIn(detail::jsonTree(text, error), classes, rootClass, error);
    if (!error.reason.empty()) result.error = detail::jsonErrorText(text, error);
    return result;
}

UnarchivedObject unarchivedBytes(std::span<const std::byte> bytes, const ArchiveClasses& classes,
                                 std::string_view rootClass) {
    detail::ArchiveError error;
    UnarchivedObject result;
    result.object = objectIn(detail::cborTree(bytes, error), classes, rootClass, error);
    if (!error.reason.empty()) result.error = detail::cborErrorText(error);
    return result;
}

}  // namespace mezalith::platform
