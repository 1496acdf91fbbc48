#pragma once
// A web view that is a widget of its own (WebKitGTK's), which a page puts into its body.
typedef struct _GtkWidget GtkWidget;

namespace qmv::gtk {

class DrawnWebView {
 public:
  virtual ~DrawnWebView() = default;
  virtual GtkWidget* widget() = 0;
};

}  // namespace qmv::gtk
