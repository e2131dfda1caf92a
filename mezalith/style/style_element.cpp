// SPDX-License-Identifier: MIT
#include <mezalith/style/rule.hpp>
#include <mezalith/style/spatial_object.hpp>
#include <mezalith/style/style_element.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace mezalith {

using platform::ChangeKind;
using platform::IndexRange;

namespace {

void checkIndex(std::size_t index, std::size_t count) {
    if (index >= count) throw std::out_of_range("MzStyleElement: no member at the index");
}

/// What a move announces.
/// Settled: the smaller index up to, but not including, the larger one, in 32-bit integers.
IndexRange movedRange(std::size_t from, std::size_t to) {
    const auto first = static_cast<std::int32_t>(from);
    const auto last = static_cast<std::int32_t>(to);
    return {static_cast<std::size_t>(std::min(first, last)),
            static_cast<std::size_t>(std::abs(first - last))};
}

// An observer that was told before an edit may have edited the list itself: what is left of it is
// edited then.

template <typename List, typename Member>
void insertAt(List& members, std::size_t index, Member member) {
    const std::size_t nearest = std::min(index, members.size());
    members.insert(members.begin() + static_cast<std::ptrdiff_t>(nearest), std::move(member));
}

/// Takes the first occurrence out.
template <typename List, typename Member>
void takeOut(List& members, const Member& member) {
    const auto found = std::ranges::find(members, member);
    if (found != members.end()) members.erase(found);
}

/// "MzStyle, not one of the rules".
std::string whyNoMember(const platform::Archivable* object, std::string_view listKey) {
    const std::string_view what = object != nullptr ? object->archiveClassName() : "null";
    return std::string(what) + ", not one of the " + std::string(listKey);
}

}  // namespace

template <typename Member>
MzStyleElement<Member>::MzStyleElement(std::string name, std::string_view listKey,
                                       std::int64_t observationContext)
    : name_(std::move(name)), listKey_(listKey), observationContext_(observationContext) {}

template <typename Member>
MzStyleElement<Member>::~MzStyleElement() {
    for (const auto& member : *members_) stopObserving(*member);
}

template <typename Member>
void MzStyleElement<Member>::setName(std::string name) {
    setProperty("name", name_, std::move(name));
}

template <typename Member>
void MzStyleElement<Member>::setTitle(std::string title) {
    setProperty("title", title_, std::move(title));
}

template <typename Member>
void MzStyleElement<Member>::setAbstract(std::string abstract) {
    setProperty("abstract", abstract_, std::move(abstract));
}

template <typename Member>
void MzStyleElement<Member>::observeValueForKey(const std::string&, platform::Observable*,
                                                const platform::Change&, std::int64_t context) {
    if (context == observationContext_) changeValues({MzDrawPropertyKey}, [] {});
}

template <typename Member>
void MzStyleElement<Member>::setMembers(Members members) {
    std::erase(members, nullptr);
    setProperty(listKey_, members_, std::make_shared<const Members>(std::move(members)));
}

template <typename Member>
template <typename Edit>
void MzStyleElement<Member>::edit(platform::ChangeKind kind, platform::IndexRange range,
                                  Edit change) {
    changeMembers(kind, range, listKey_, [&] {
        auto edited = std::make_shared<Members>(*members_);
        change(*edited);
        members_ = std::move(edited);
    });
}

template <typename Member>
bool MzStyleElement<Member>::addMember(std::shared_ptr<Member> member) {
    return addMember(std::move(member), members_->size());
}

template <typename Member>
bool MzStyleElement<Member>::addMember(std::shared_ptr<Member> member, std::size_t index) {
    if (member == nullptr) return false;
    observe(*member);
    if (index > members_->size()) return false;
    edit(ChangeKind::Insertion, {index, 1},
         [&](Members& members) { insertAt(members, index, member); });
    return true;
}

template <typename Member>
bool MzStyleElement<Member>::removeMember(std::shared_ptr<Member> member) {
    if (member == nullptr) return false;
    stopObserving(*member);
    willRemoveMember(*member);
    const auto index = std::ranges::find(*members_, member) - members_->begin();
    if (static_cast<std::size_t>(index) == members_->size()) return true;
    edit(ChangeKind::Removal, {static_cast<std::size_t>(index), 1},
         [&](Members& members) { takeOut(members, member); });
    return true;
}

template <typename Member>
bool MzStyleElement<Member>::moveMemberFromIndex(std::size_t from, std::size_t to) {
    checkIndex(from, members_->size());
    checkIndex(to, members_->size());
    edit(ChangeKind::Replacement, movedRange(from, to), [&](Members& members) {
        if (from >= members.size()) return;
        std::shared_ptr<Member> member = std::move(members[from]);
        members.erase(members.begin() + static_cast<std::ptrdiff_t>(from));
        insertAt(members, to, std::move(member));
    });
    return true;
}

template <typename Member>
void MzStyleElement<Member>::willRemoveMember(Member&) {}

template <typename Member>
void MzStyleElement<Member>::copyElementTo(MzStyleElement& copy) const {
    copy.name_ = name_;
    copy.title_ = title_;
    copy.abstract_ = abstract_;
    copy.members_ = members_;
}

template <typename Member>
bool MzStyleElement<Member>::isEqualToElement(const MzStyleElement& other) const {
    return name_ == other.name_ && title_ == other.title_ && abstract_ == other.abstract_ &&
           *members_ == *other.members_;
}

template <typename Member>
void MzStyleElement<Member>::encodeTexts(platform::KeyedArchiver& coder) const {
    coder.encodeString(name_, "name");
    coder.encodeString(title_, "title");
    coder.encodeString(abstract_, "abstract");
}

template <typename Member>
void MzStyleElement<Member>::encodeMembers(platform::KeyedArchiver& coder) const {
    std::vector<const platform::Archivable*> objects;
    for (const auto& member : *members_) {
        objects.push_back(dynamic_cast<const platform::Archivable*>(member.get()));
    }
    std::erase(objects, nullptr);
    coder.encodeObjects(objects, listKey_);
}

template <typename Member>
void MzStyleElement<Member>::decodeTexts(const platform::KeyedUnarchiver& coder) {
    setName(coder.decodeString("name"));
    setTitle(coder.decodeString("title"));
    setAbstract(coder.decodeString("abstract"));
}

template <typename Member>
bool MzStyleElement<Member>::decodeMembers(const platform::KeyedUnarchiver& coder) {
    Members members;
    for (const auto& object : coder.decodeObjects(listKey_)) {
        const auto member = std::dynamic_pointer_cast<const Member>(object);
        if (member == nullptr) {
            coder.failWithErrorAtIndex(whyNoMember(object.get(), listKey_), listKey_,
                                       members.size());
            return false;
        }
        // The archive made it, and nobody else has a say in its constness.
        members.push_back(std::const_pointer_cast<Member>(member));
    }
    setMembers(std::move(members));
    for (const auto& member : *members_) observe(*member);
    return true;
}

template <typename Member>
void MzStyleElement<Member>::observe(Member& member) {
    member.addObserver(this, MzDrawPropertyKey, observationContext_);
}

template <typename Member>
void MzStyleElement<Member>::stopObserving(Member& member) {
    member.removeObserver(this, MzDrawPropertyKey, observationContext_);
}

template class MzStyleElement<MzSymbolizer>;
template class MzStyleElement<MzRule>;

}  // namespace mezalith
