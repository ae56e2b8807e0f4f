#include "ui/files/NodeActions.h"

#include "base/Uuid.h"
#include "removal/DeletionPlan.h"
#include "scanning/ScanPaths.h"
#include "state/AppState.h"
#include "ui/Desktop.h"
#include "ui/QtText.h"

#include <QMenu>

namespace dorvik {

namespace {

std::vector<std::string> pathsOf(const std::vector<FileNodePtr>& nodes) {
    std::vector<std::string> paths;
    for (const auto& node : nodes) {
        paths.push_back(node->path());
    }
    return paths;
}

} // namespace

void revealPaths(AppState& state, const std::vector<std::string>& paths) {
    if (paths.empty() || Desktop::reveal(paths)) {
        return;
    }
    state.removal().showToast(Toast{Uuid::make(),
                                    "No file manager answered",
                                    "Couldn't show " + displayPath(paths.front()) + ".",
                                    {},
                                    true});
}

void proposeNodeDeletion(AppState& state, const std::vector<FileNodePtr>& nodes) {
    std::vector<PlanItem> items;
    for (const auto& node : nodes) {
        items.push_back(makePlanItem(node->path(), node->size, Removal::trash));
    }
    state.removal().propose(items, std::string(PlanTitles::deleteItems));
}

QMenu* makeNodeContextMenu(AppState& state, const std::vector<FileNodePtr>& nodes,
                           const std::function<void(const FileNodePtr&)>& preview,
                           QWidget* parent) {
    auto* menu = new QMenu(parent);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (nodes.empty()) {
        return menu;
    }
    const FileNodePtr first = nodes.front();
    const std::vector<std::string> paths = pathsOf(nodes);
    if (preview && (!first->isDirectory || first->isPackage)) {
        menu->addAction(QObject::tr("Quick Look"), [preview, first] { preview(first); });
    }
    menu->addAction(QObject::tr("Show in Finder"), [&state, paths] { revealPaths(state, paths); });
    menu->addAction(QObject::tr("Open"), [paths] {
        for (const auto& path : paths) {
            Desktop::open(path);
        }
    });
    if (first->isDirectory) {
        menu->addAction(QObject::tr("Open in Explorer"),
                        [&state, first] { state.revealNode(first); });
    }
    menu->addAction(QObject::tr("Copy Path"), [paths] { Desktop::copyPaths(paths); });
    menu->addAction(QObject::tr("Exclude from Scans"), [&state, paths] {
        for (const auto& path : paths) {
            state.settings().appendExcludedPath(path);
        }
    });
    menu->addSeparator();
    const QString deleteTitle = nodes.size() == 1
                                    ? QObject::tr("Delete %1").arg(nameText(first->name))
                                    : QObject::tr("Delete Items");
    menu->addAction(deleteTitle, [&state, nodes] { proposeNodeDeletion(state, nodes); });
    return menu;
}

} // namespace dorvik
