; SPDX-License-Identifier: Apache-2.0
; SPDX-FileCopyrightText: 2026 The Sorvane developers
;
; (speak VOICE STRETCH PITCH DEVIATION TEXT STEM) writes STEM.wav and STEM.txt, which has a line
; "start end" in seconds for each token of the text; -1 stands for a token without sound.  STEM.done
; appears when both are complete.

(define (first_start word)
  (item.feat word 'R:SylStructure.daughter1.daughter1.R:Segment.segment_start))

(define (last_end word)
  (item.feat word 'R:SylStructure.daughtern.daughtern.R:Segment.end))

(define (sounding words)
  (cond
    ((null? words) nil)
    ((> (last_end (car words)) 0) (cons (car words) (sounding (cdr words))))
    (t (sounding (cdr words)))))

(define (write_span file token)
  (let ((words (sounding (item.daughters token))))
    (if (null? words)
        (format file "-1 -1\n")
        (format file "%f %f\n" (first_start (car words)) (last_end (car (last words)))))))

(define (write_spans file token)
  (while token
    (write_span file token)
    (set! token (item.next token))))

; A borrowed speaker has the English voice's pronunciation, timing and melody, but takes the sounds of
; the diphones of a speaker of another language: each phone starts and ends as the nearest of theirs.

(define (borrow_sounds utterance)
  (mapcar
    (lambda (segment)
      (let ((sounds (cdr (assoc_string (item.name segment) borrowed_sounds))))
        (item.set_feat segment "us_diphone_right" (car sounds))
        (item.set_feat segment "us_diphone_left" (car (last sounds)))))
    (utt.relation.items utterance 'Segment))
  utterance)

; Some of them are so loud that their speech would be clipped.  A diphone is used again, so it is made quieter once.

(define (quieten unit)
  (let ((diphone (string-append current_voice_name " " (item.name unit))))
    (if (not (member_string diphone quiet_diphones))
        (begin
          (wave.rescale (item.feat unit 'sig) 0.3)
          (set! quiet_diphones (cons diphone quiet_diphones))))))

(define (get_quiet_diphones utterance)
  (get_diphones utterance)
  (if (member_string current_voice_name borrowed_databases)
      (mapcar quieten (utt.relation.items utterance 'Unit)))
  utterance)

(set! get_diphones us_get_diphones)
(set! us_get_diphones get_quiet_diphones)
(set! quiet_diphones nil)

(define (voice_borrowed name index_file sounds)
  (voice_kal_diphone)
  (set! borrowed_sounds sounds)
  (set! pause (cadr (assoc_string "pau" sounds)))
  (set! silence (string-append pause "-" pause))
  (set! UniSyn_module_hooks (list borrow_sounds))
  (if (not (member_string name borrowed_databases))
      (begin
        (us_diphone_init
          (list (list 'name name) (list 'index_file index_file) '(grouped "true") (list 'default_diphone silence)))
        (set! borrowed_databases (cons name borrowed_databases))))
  (us_db_select name)
  (set! current_voice_name name))

(define (speak voice stretch pitch deviation text stem)
  (if (not (string-equal voice current_voice_name))
      (begin
        (eval (list (intern (string-append "voice_" voice))))
        (set! current_voice_name voice)))
  (Parameter.set 'Duration_Stretch stretch)
  (if (> pitch 0)
      (set! int_lr_params
            (list (list 'target_f0_mean pitch) (list 'target_f0_std deviation)
                  '(model_f0_mean 170) '(model_f0_std 34))))
  (let ((utterance (utt.synth (eval (list 'Utterance 'Text text))))
        (file (fopen (string-append stem ".txt") "w")))
    (utt.save.wave utterance (string-append stem ".wav") 'riff)
    (write_spans file (utt.relation.first utterance 'Token))
    (fclose file)
    (fclose (fopen (string-append stem ".done") "w"))))

(set! borrowed_databases nil)
(set! current_voice_name "")
