// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/platform/observable.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith {

/// What styles and rules have in common: texts that describe them, and an ordered list of members
/// (the rules of a style, the symbolizers of a rule) that share in their drawing.
///
/// A member that is added is observed: when its "drawProperty" changes, the element announces a
/// change of its own. Observation begins with adding or decoding a member and ends with removing it
/// or with the element; replacing the whole list leaves it as it is, and a copy observes nothing.
/// Lists hold no null. They may be edited at any time, also by what the element calls while it
/// draws or is asked for a hit, which goes on with the list as it was when it began. An observer
/// that is told before an edit and edits the list itself comes first: of the edit is done what can
/// be done with the list then. One that ends the element ends the edit.
template <typename Member>
class MEZALITH_EXPORT MzStyleElement : public platform::Observable,
                                       public platform::Observer,
                                       public platform::Archivable,
                                       public platform::Object {
  public:
    using Members = std::vector<std::shared_ptr<Member>>;

    MzStyleElement(const MzStyleElement&) = delete;
    MzStyleElement& operator=(const MzStyleElement&) = delete;
    ~MzStyleElement() override;

    const std::string& name() const { return name_; }
    void setName(std::string name);
    const std::string& title() const { return title_; }
    void setTitle(std::string title);
    const std::string& abstract() const { return abstract_; }
    void setAbstract(std::string abstract);

    /// The list of members as it is now; later edits make a new one.
    std::shared_ptr<const Members> memberSnapshot() const { return members_; }

    /// Announces a change of the element's drawing for a member's; ignores notifications that come
    /// with any context but that of the element's own observation.
    void observeValueForKey(const std::string& key, platform::Observable* object,
                            const platform::Change& change, std::int64_t context) override;

  protected:
    /// `listKey` names the list in notifications and archives and must outlive the element;
    /// `observationContext` marks the observation of its members.
    MzStyleElement(std::string name, std::string_view listKey, std::int64_t observationContext);

    const Members& members() const { return *members_; }
    void setMembers(Members members);

    bool addMember(std::shared_ptr<Member> member);
    bool addMember(std::shared_ptr<Member> member, std::size_t index);
    bool removeMember(std::shared_ptr<Member> member);
    bool moveMemberFromIndex(std::size_t from, std::size_t to);
    /// Called when a member is removed, once it is no longer observed; does nothing.
    virtual void willRemoveMember(Member& member);

    /// Sets on `copy` the same texts and the same members, which it does not observe.
    void copyElementTo(MzStyleElement& copy) const;
    /// Equal texts and the very same members.
    bool isEqualToElement(const MzStyleElement& other) const;

    void encodeTexts(platform::KeyedArchiver& coder) const;
    /// Members that cannot be archived are left out.
    void encodeMembers(platform::KeyedArchiver& coder) const;
    void decodeTexts(const platform::KeyedUnarchiver& coder);
    /// Reads and observes the members. NO, leaving the list as it was, when one is of another
    /// class.
    bool decodeMembers(const platform::KeyedUnarchiver& coder);

  private:
    /// Announces a change of the list around making it in a new copy.
    template <typename Edit>
    void edit(platform::ChangeKind kind, platform::IndexRange range, Edit change);
    void observe(Member& member);
    void stopObserving(Member& member);

    std::string name_;
    std::string title_;
    std::string abstract_;
    std::shared_ptr<const Members> members_ = std::make_shared<const Members>();
    std::string_view listKey_;
    std::int64_t observationContext_;
};

}  // namespace mezalith
