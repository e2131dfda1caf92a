// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/arguments.hpp"
#include "host/parts.hpp"
#include <mezalith/platform/image.hpp>
#include <mezalith/style/style.hpp>

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace mezalith::app {

/// The style options of the command line as they were given: "VALUE" or "LAYER:VALUE" each.
struct StyleTexts {
    std::vector<std::string> fill{};
    std::vector<std::string> stroke{};
    std::vector<std::string> width{};
    std::vector<std::string> dash{};
    std::vector<std::string> icon{};  ///< "FILE" or "LAYER=FILE" each
    std::vector<std::string> iconSize{};
    std::vector<std::string> style{};  ///< "FILE" or "LAYER=FILE" each
};

/// Adds the options to `command`; `texts` must live as long.
void addStyleOptions(CLI::App& command, StyleTexts& texts);

/// How one kind of feature is drawn: lengths in view points; a null colour paints nothing.
struct Paint {
    std::shared_ptr<const platform::Color> fill;
    std::shared_ptr<const platform::Color> stroke;
    double width = 0;
    std::vector<double> dash;  ///< painted and unpainted lengths in turn; empty for solid
    std::shared_ptr<const platform::Image> icon{};  ///< in place of markers, or null
    std::optional<double> iconSize{};  ///< of the icon's longer side; its own without one
};

/// The styles of the layers of a map: quiet defaults by form, changed by what the options say of
/// the layer or, failing that, of all layers. Of several values the last one counts. A layer that
/// has a style document is drawn by it.
class LayerStyles {
  public:
    /// Throws a UsageError for a value that is not to be understood and for one beside a document,
    /// both of the same layer or of all; and a host::Failure for a document or a picture that
    /// cannot be read.
    explicit LayerStyles(const StyleTexts& texts);

    /// Throws a UsageError for a prefix that is none of `layers`.
    void checkLayers(std::span<const std::string> layers) const;

    Paint paint(const std::string& layer, host::Form form) const;

    /// The layer's document, or else the paint as a style of one rule and one symbolizer, made once
    /// for each layer and form.
    std::shared_ptr<MzStyle> style(const std::string& layer, host::Form form);
    /// How far (view points) features of these forms may reach beyond their places in a layer at
    /// this scale factor; 2000 at most.
    double reach(const std::string& layer, std::span<const host::Form> forms, double scaleFactor);

  private:
    /// The values of one option. The key of what is said of all layers is empty.
    template <typename T>
    using Values = std::map<std::optional<std::string>, T>;

    template <typename T>
    static const T* find(const Values<T>& values, const std::string& layer);
    void readIcons(const std::vector<std::string>& arguments);
    void readDocuments(const std::vector<std::string>& arguments);

    Values<std::shared_ptr<const platform::Color>> fill_;
    Values<std::shared_ptr<const platform::Color>> stroke_;
    Values<double> width_;
    Values<std::vector<double>> dash_;
    Values<std::shared_ptr<const platform::Image>> icon_;
    Values<double> iconSize_;
    Values<std::shared_ptr<MzStyle>> documents_;
    Values<std::string> argumentOfLayer_;  ///< the argument that spoke of the layer first
    std::map<std::pair<std::string, host::Form>, std::shared_ptr<MzStyle>> styles_;
};

}  // namespace mezalith::app
