// A menu of the same rows in GTK 3, for `menu_latency`: 40 rows, the second with a submenu of
// three, on a button at the upper left corner of the screen.

#include <gtk/gtk.h>

#include <string>

namespace {

GtkWidget* addRow(GtkWidget* menu, const std::string& title) {
  GtkWidget* row = gtk_menu_item_new_with_label(title.c_str());
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), row);
  return row;
}

}  // namespace

int main(int count, char** arguments) {
  gtk_init(&count, &arguments);
  GtkWidget* menu = gtk_menu_new();
  for (int row = 1; row <= 40; ++row) {
    GtkWidget* item = addRow(menu, "Row " + std::to_string(row));
    if (row != 2) continue;
    GtkWidget* submenu = gtk_menu_new();
    for (const char* title : {"Sub 1", "Sub 2", "Sub 3"})
      addRow(submenu, title);
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), submenu);
  }
  gtk_widget_show_all(menu);
  GtkWidget* button = gtk_menu_button_new();
  gtk_menu_button_set_popup(GTK_MENU_BUTTON(button), menu);
  gtk_button_set_label(GTK_BUTTON(button), "Menu");
  GtkWidget* window = gtk_window_new(GTK_WINDOW_POPUP);
  gtk_container_add(GTK_CONTAINER(window), button);
  gtk_window_move(GTK_WINDOW(window), 0, 0);
  gtk_widget_set_size_request(window, 160, 22);
  gtk_widget_show_all(window);
  gtk_main();
  return 0;
}
