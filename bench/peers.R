# The tests of a case as R calls them, on columns of doubles in files. Driven line by line from standard input:
#
#   columns   reads the columns out of the folder named behind it; answers how many there are
#   run       one call on data that was prepared; answers its seconds of processor time

groups_of <- function(columns) split(columns[[1]], columns[[2]])
values_and_group <- function(columns) list(columns[[1]], factor(columns[[2]]))
as_they_are <- function(columns) columns

mann_whitney <- function(groups) wilcox.test(groups[[1]], groups[[2]], exact = FALSE)
kruskal_wallis <- function(data) kruskal.test(data[[1]], data[[2]])
median_test <- function(data) chisq.test(table(data[[1]] > median(data[[1]]), data[[2]]))
ks_two_sample <- function(groups) ks.test(groups[[1]], groups[[2]], exact = FALSE)
ks_normal <- function(data) ks.test(data[[1]], "pnorm", mean(data[[1]]), sd(data[[1]]), exact = FALSE)

# How a case prepares its data, and its call.
cases <- list(
  "mann-whitney" = list(groups_of, mann_whitney),
  "kruskal-wallis" = list(values_and_group, kruskal_wallis),
  "median" = list(values_and_group, median_test),
  "wilcoxon-pairs" = list(as_they_are, function(columns) {
    wilcox.test(columns[[2]], columns[[1]], paired = TRUE, exact = FALSE, correct = FALSE)
  }),
  "ks-two-sample" = list(groups_of, ks_two_sample),
  "ks-normal" = list(as_they_are, ks_normal),
  "friedman" = list(function(columns) do.call(cbind, columns), friedman.test),
  "five-tests" = list(function(columns) list(groups_of(columns), values_and_group(columns)), function(data) {
    mann_whitney(data[[1]])
    ks_two_sample(data[[1]])
    kruskal_wallis(data[[2]])
    median_test(data[[2]])
    ks_normal(data[[2]])
  })
)

options(warn = -1)
case <- cases[[commandArgs(trailingOnly = TRUE)[1]]]
orders <- file("stdin", "r")
while (length(order <- readLines(orders, n = 1)) > 0) {
  if (startsWith(order, "columns ")) {
    folder <- substring(order, nchar("columns ") + 1)
    files <- file.path(folder, paste0("column", seq_along(list.files(folder, "^column")) - 1))
    prepared <- case[[1]](lapply(files, function(path) readBin(path, "double", file.size(path) / 8)))
    cat(length(files), "\n", sep = "")
  } else {
    cat(sum(system.time(case[[2]](prepared))[c("user.self", "sys.self")]), "\n", sep = "")
  }
  flush(stdout())
}
