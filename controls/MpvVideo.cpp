#include "controls/MpvVideo.h"
#include "controls/MpvSession.h"
#include "shell/services/AppLog.h"
#include <QGuiApplication>
#include <QMetaObject>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <mpv/render_gl.h>

namespace td {
namespace {

void* procAddress(void*, const char* name)
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    return context ? reinterpret_cast<void*>(context->getProcAddress(QByteArray(name))) : nullptr;
}

}  // namespace

MpvVideo::MpvVideo(MpvSession& session, QWidget* parent) : QOpenGLWidget(parent), session_(session) {}

MpvVideo::~MpvVideo()
{
    makeCurrent();
    release();
    doneCurrent();
}

bool MpvVideo::GlAvailable()
{
    static const bool available = [] {
        // GL widgets need a platform that composes windows with GL; elsewhere (offscreen, minimal,
        // linuxfb) Qt cannot show them even when a GL context can be made.
        const QString platform = QGuiApplication::platformName();
        if (platform != QLatin1String("xcb") && !platform.startsWith(QLatin1String("wayland")) &&
            !platform.startsWith(QLatin1String("eglfs")))
            return false;
        QOpenGLContext context;
        if (!context.create())
            return false;
        QOffscreenSurface surface;
        surface.create();
        const bool current = context.makeCurrent(&surface);
        if (current)
            context.doneCurrent();
        return current;
    }();
    return available;
}

void MpvVideo::initializeGL()
{
    release();
    if (!session_.valid())
        return;
    mpv_opengl_init_params glParams{&procAddress, nullptr};
    char apiType[] = MPV_RENDER_API_TYPE_OPENGL;
    mpv_render_param params[] = {{MPV_RENDER_PARAM_API_TYPE, apiType},
                                 {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &glParams},
                                 {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (const int error = mpv_render_context_create(&render_, session_.handle(), params); error < 0) {
        render_ = nullptr;
        AppLogError(QStringLiteral("Player: no picture, the video renderer failed: ") +
                    QString::fromUtf8(mpv_error_string(error)));
        return;
    }
    mpv_render_context_set_update_callback(render_, &MpvVideo::onFrame, this);
    // The context goes with its window (a move to another top-level): the renderer must go first.
    connect(
        context(), &QOpenGLContext::aboutToBeDestroyed, this,
        [this] {
            makeCurrent();
            release();
            doneCurrent();
        },
        Qt::DirectConnection);
    session_.setVideoWanted(true);
}

void MpvVideo::paintGL()
{
    if (!render_) {
        QOpenGLFunctions* gl = context()->functions();
        gl->glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    const qreal ratio = devicePixelRatioF();
    mpv_opengl_fbo fbo{static_cast<int>(defaultFramebufferObject()), qRound(width() * ratio),
                       qRound(height() * ratio), 0};
    int flipY = 1;
    mpv_render_param params[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
                                 {MPV_RENDER_PARAM_FLIP_Y, &flipY},
                                 {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(render_, params);
}

void MpvVideo::onFrame(void* self)
{
    // Called on one of the core's threads; the drawing happens on ours.
    auto* video = static_cast<MpvVideo*>(self);
    QMetaObject::invokeMethod(video, qOverload<>(&QWidget::update), Qt::QueuedConnection);
}

void MpvVideo::release()
{
    if (!render_)
        return;
    session_.setVideoWanted(false);
    mpv_render_context_free(render_);
    render_ = nullptr;
}

}  // namespace td
