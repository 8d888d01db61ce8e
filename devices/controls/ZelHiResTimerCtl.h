#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <map>
#include <memory>

namespace tracelet {

/// Named periodic timers on absolute deadlines of the monotonic clock: no drift, and after a late tick no
/// burst. A tick that falls due while a handler of the same timer still runs is dropped.
class ZelHiResTimerCtl : public QObject {
    Q_OBJECT

public:
    explicit ZelHiResTimerCtl(QObject* parent = nullptr);
    ~ZelHiResTimerCtl() override;

    [[nodiscard]] bool TimerExists(const QString& name) const;
    /// Adds a timer; an interval below 1 ms, or a name that exists, raises.
    void AddTimer(const QString& name, std::int32_t intervalMs, bool enabled);
    [[nodiscard]] std::int32_t TimerInterval(const QString& name) const; ///< milliseconds; unknown name raises
    void SetTimerInterval(const QString& name, std::int32_t intervalMs); ///< restarts a running timer's period
    [[nodiscard]] bool TimerEnabled(const QString& name) const;
    void SetTimerEnabled(const QString& name, bool enabled); ///< disabling is immediate: no tick comes after

signals:
    void OnTimer(const QString& name);
};

} // namespace tracelet
