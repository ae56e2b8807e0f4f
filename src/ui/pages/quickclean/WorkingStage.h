#pragma once

// Quick Clean while it works: a turning ring, what it is doing and what that means.

#include <QWidget>

class QLabel;

namespace dorvik {

class WorkingStage : public QWidget {
public:
    explicit WorkingStage(QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& subtitle);
    QString title() const;
    QString subtitle() const;

private:
    QLabel* title_;
    QLabel* subtitle_;
};

} // namespace dorvik
