#pragma once
#include <QOpenGLWidget>

struct mpv_render_context;

namespace td {

class MpvSession;

// The picture of an MpvSession, drawn by the core's render API into this widget's GL frame buffer.
// Until the widget has its GL context (it is first shown) and after it loses it, the session decodes
// no picture.
class MpvVideo : public QOpenGLWidget {
    Q_OBJECT
public:
    MpvVideo(MpvSession& session, QWidget* parent);
    ~MpvVideo() override;

    // Whether this display can show a GL widget at all (not so on the offscreen test platform).
    static bool GlAvailable();
    bool drawing() const { return render_ != nullptr; }

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    static void onFrame(void* self);
    void release();

    MpvSession& session_;
    mpv_render_context* render_ = nullptr;
};

}  // namespace td
