// A style that isn't the usual one.
#pragma once

#include <QProxyStyle>

namespace pelmarix::test {

/// With frames of 11 pixels.
class ThickFrames : public QProxyStyle {
 public:
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    return metric == PM_DefaultFrameWidth ? 11 : QProxyStyle::pixelMetric(metric, option, widget);
  }
};

}  // namespace pelmarix::test
