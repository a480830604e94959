// A small dialog built as the system's dialogs are, for driving by window lines in tests.
#pragma once
#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

#include <string>
#include <vector>

// Template 1000 "Variablen" with: edit 1001, read-only edit 1002, label 1003, list 1004 with
// columns Name/Wert/Typ and three rows, status bar with two panes, menu action 8027, tool bar
// actions 7000 (enabled) and 7003 (disabled), and buttons 1 (OK) and 2 (Cancel). The list's
// context menu offers 8040 and 8041.
class TestDialog : public QDialog {
public:
    QLineEdit* edit;
    QLineEdit* readOnly;
    QTreeView* list;
    QStandardItemModel* model;
    QAction* menuChecked;
    std::vector<std::string> events; // what the dialog saw, in order

    TestDialog() {
        setProperty("templateId", 1000);
        setWindowTitle("Variablen \"Werkhalle\"");
        auto* layout = new QVBoxLayout(this);
        auto* bar = new QMenuBar(this);
        QMenu* file = bar->addMenu("Datei");
        menuChecked = file->addAction("Alle");
        menuChecked->setObjectName("8027");
        layout->setMenuBar(bar);

        auto* tools = new QToolBar(this);
        for (int i : {0, 3}) {
            QAction* a = tools->addAction(QString("T%1").arg(i));
            a->setObjectName(QString("700%1").arg(i));
            a->setEnabled(i == 0);
            QObject::connect(a, &QAction::triggered, this,
                             [this, i] { events.push_back("tool " + std::to_string(i)); });
        }
        layout->addWidget(tools);

        edit = new QLineEdit("alt");
        edit->setObjectName("1001");
        QObject::connect(edit, &QLineEdit::textEdited, this,
                         [this](const QString& t) { events.push_back("edited " + t.toStdString()); });
        QObject::connect(edit, &QLineEdit::returnPressed, this, [this] { events.push_back("return"); });
        layout->addWidget(edit);
        readOnly = new QLineEdit("C:\\pfad \"x\"");
        readOnly->setObjectName("1002");
        readOnly->setReadOnly(true);
        layout->addWidget(readOnly);
        auto* label = new QLabel("Beschreibung");
        label->setObjectName("1003");
        layout->addWidget(label);

        list = new QTreeView;
        list->setObjectName("1004");
        list->setRootIsDecorated(false);
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        list->setSelectionBehavior(QAbstractItemView::SelectRows);
        model = new QStandardItemModel(0, 3, list);
        model->setHorizontalHeaderLabels({"Name", "Wert", "Typ"});
        addRow("LUPREC", "4", "Integer", -1, QColor(), QColor());
        addRow("       ANGBASE", "0", "Real", 2, QColor(255, 255, 192), QColor(255, 0, 0));
        addRow("CLAYER", "A-WAND", "String", -1, QColor(), QColor());
        list->setModel(model);
        // The list's context menu runs modally, as the system's dialogs run theirs.
        list->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(list, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
            QMenu menu(this);
            for (const char* id : {"8040", "8041"})
                menu.addAction(QString("Eintrag %1").arg(id))->setObjectName(id);
            QAction* chosen = menu.exec(list->viewport()->mapToGlobal(pos));
            events.push_back("menu " + (chosen ? chosen->objectName().toStdString() : std::string("none")));
        });
        layout->addWidget(list);

        auto* status = new QStatusBar;
        status->addWidget(new QLabel("Bereit"));
        status->addWidget(new QLabel("3 Variablen"));
        layout->addWidget(status);

        for (auto [id, text] : {std::pair{"1", "OK"}, {"2", "Abbrechen"}}) {
            auto* button = new QPushButton(text);
            button->setObjectName(id);
            QObject::connect(button, &QPushButton::clicked, this,
                             *id == '1' ? &QDialog::accept : &QDialog::reject);
            layout->addWidget(button);
        }
    }

    void addRow(const QString& name, const QString& value, const QString& type, int image,
                const QColor& background, const QColor& valueColour) {
        QList<QStandardItem*> items{new QStandardItem(name), new QStandardItem(value),
                                    new QStandardItem(type)};
        if (image >= 0)
            items[0]->setData(image, Qt::UserRole + 1);
        if (background.isValid())
            items[0]->setBackground(background);
        if (valueColour.isValid())
            items[1]->setForeground(valueColour);
        model->appendRow(items);
    }
};
