"""A program that answers each line of its standard input with a line of figures, so that several can take turns."""
import subprocess


class Worker:
    def __init__(self, *command):
        self.process = subprocess.Popen([str(word) for word in command], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        return self

    def __exit__(self, *fault):
        self.process.stdin.close()
        self.process.wait()

    def ask(self, order):
        return [float(figure) for figure in self.ask_words(order)]

    def ask_words(self, order):
        self.process.stdin.write(order + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline().split()
        if not answer:
            raise RuntimeError(f"{order}: no answer from {self.process.args}")
        return answer
