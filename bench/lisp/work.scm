; The work of work.lsp for Scheme interpreters. The one that runs it defines `clock`, milliseconds, first.
(define (fib n)
  (if (< n 2) n (+ (fib (- n 1)) (fib (- n 2)))))

(define (numbers count)
  (let loop ((count count) (out '()))
    (if (> count 0) (loop (- count 1) (cons count out)) out)))

(define (lists rounds)
  (let loop ((rounds rounds) (total 0))
    (if (> rounds 0)
        (loop (- rounds 1)
              (+ total
                 (apply + (map (lambda (n) (+ n 1)) (reverse (append (numbers 1000) (numbers 1000)))))
                 (cadr (assoc 900 (map (lambda (n) (list n (* n 2))) (numbers 1000))))))
        total)))

(define (words count)
  (let loop ((count count) (out ""))
    (if (> count 0)
        (let ((place (remainder count 10)))
          (loop (- count 1) (string-append out (substring "abcdefghij" place (+ place 1)))))
        out)))

(define (upper text)
  (list->string (map char-upcase (string->list text))))

(define (letters text char)
  (let loop ((place 0) (found 0))
    (if (< place (string-length text))
        (loop (+ place 1) (if (string=? (substring text place (+ place 1)) char) (+ found 1) found))
        found)))

(define (texts rounds)
  (let loop ((rounds rounds) (total 0))
    (if (> rounds 0)
        (loop (- rounds 1)
              (+ total (letters (upper (words 1000)) "C") (string-length (number->string rounds))))
        total)))

(define (timed name work)
  (let* ((start (clock)) (value (work)) (end (clock)))
    (display peer) (display " ") (display name) (display " ")
    (display (inexact->exact (round (- end start)))) (display " ") (display value) (newline)))

(timed "fib" (lambda () (fib 27)))
(timed "lists" (lambda () (lists 200)))
(timed "texts" (lambda () (texts 200)))
